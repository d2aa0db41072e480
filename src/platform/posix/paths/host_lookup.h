// From the parts of a Windows path to the host's files, step by step.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/paths/windows_path.h"

namespace torvane::posix {

/// What the letter of a drive leads to.
struct Drive {
  std::string root;    ///< the host's folder, without a closing slash; empty for the host's root
  std::string target;  ///< what the drive's link holds; empty where it is none
  int error = 0;       ///< the errno that keeps from reaching the root; 0 for none
};
Drive LookAtDrive(char16_t drive);

/// The host's folder that a drive stands for, without a closing slash (empty for the host's root);
/// nothing for a drive that isn't mapped.
std::optional<std::string> DriveRoot(char16_t drive);

/// The host's path of what all but the last part name; nothing where one of them is missing. What
/// is there under its exact names takes one call.
std::optional<std::string> FindFolderOf(const PathParts& path);

/// The host's path of a folder's entry; nothing where it is missing or can't be a name.
std::optional<std::string> FindPart(const std::string& folder, std::u16string_view part);

/// Looks at what all parts name; gives the host's path, nothing with `errno` where it isn't there.
std::optional<std::string> FindWhole(const PathParts& path, struct stat& status);

}  // namespace torvane::posix
