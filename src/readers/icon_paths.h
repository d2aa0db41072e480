// Where the icons of the list lie while the program runs.
#pragma once

#include "storage/text.h"

namespace torvane {

/// Full paths of icon files in the temporary folder. Start-up writes the files and sets the paths;
/// the readers hand them to the shell.
struct IconPaths {
  Text IconMissingFile;
  Text IconFindReplace;
  Text IconHost;
  Text IconCommand;
  Text IconFtp;
};

/// The program's icon paths.
IconPaths& Icons();

}  // namespace torvane
