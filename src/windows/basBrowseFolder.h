// Asking the user where a program is installed.
#pragma once

#include "windows/controls/form.h"

namespace torvane {

/// Shows the folder dialogue for the program `sName`, modal to `owner`. Gives the chosen folder
/// closed by a backslash, or a lone backslash where the user cancels or chooses no real folder.
Text BrowseForFolder(const Text& sName, Form& owner);

}  // namespace torvane
