// Between Windows paths and the host's files. A drive is a link in the prefix's dosdevices; a path
// of the form \\?\unix\tmp\x is the host's /tmp/x, as Wine has it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace torvane::posix {

/// The host's path of an existing Windows path, each part found without case where its exact name
/// isn't there; nothing for a drive that isn't mapped, a UNC path, or a part that is missing.
std::optional<std::filesystem::path> FindHostPath(std::u16string_view windowsPath);

/// The host's path for a Windows path whose last part need not exist, its folder having to.
std::optional<std::filesystem::path> HostPathForNew(std::u16string_view windowsPath);

/// The Windows path of a host file or folder by the drive whose target is the longest folder above
/// it ("C:\data"), without a closing backslash but for a root; nothing where no drive reaches it.
std::optional<std::u16string> WindowsPath(const std::filesystem::path& hostPath);

}  // namespace torvane::posix
