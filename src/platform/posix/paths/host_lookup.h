// From the parts of a Windows path to the host's files, step by step.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/paths/windows_path.h"

namespace torvane::posix {

/// The host's folder that a drive stands for, without a closing slash (empty for the host's root);
/// nothing for a drive that isn't mapped.
std::optional<std::string> DriveRoot(char16_t drive);

/// The host's path of what all but the last part name; nothing where one of them is missing.
std::optional<std::string> FindFolderOf(const PathParts& path);

/// The host's path of a folder's entry; nothing where it is missing or can't be a name.
std::optional<std::string> FindPart(const std::string& folder, std::u16string_view part);

}  // namespace torvane::posix
