// Who may do what with a file, when another file takes its place.
#pragma once

#include <filesystem>

#include "platform/posix/disk/file_descriptor.h"

namespace torvane::posix {

/// Throws WriteRefused where a file belongs to another user and a new one in its place couldn't be
/// given to that user. A file that isn't there belongs to nobody.
void CheckOwner(const std::filesystem::path& file);

/// Gives an open file the owner, group, mode, access list and user.* attributes of the one that it
/// is to replace. The new file gives nobody a right that the old one didn't: an access list that
/// only the new one has is taken off, and where the group can't be kept the bits of the group are
/// cleared, and from those of the others what the group didn't have. Does nothing where there is
/// no old file. Throws std::system_error.
void TakeOverRights(const std::filesystem::path& file, const FileDescriptor& successor);

}  // namespace torvane::posix
