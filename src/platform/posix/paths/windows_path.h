// A Windows path taken apart by the rules that Windows applies before it looks at any disk.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::posix {

struct PathParts {
  char16_t drive = 0;                 ///< lower-case letter; 0 for the host's root
  std::vector<std::u16string> parts;  ///< below the root, without "." and ".."
  bool closed = false;  ///< a backslash stands behind the last part, or is all there is
  bool device = false;  ///< the last part is a device's name (NUL, COM1)
};

/// The parts of a full or relative path; the current folder of every drive is its root, the current
/// drive C:. Nothing for an empty path, a UNC path and the other forms that lead to no drive.
std::optional<PathParts> SplitWindowsPath(std::u16string_view path);

/// Whether a part can name a file: no wildcard, colon, quote, bracket, bar, control character or
/// half of a surrogate pair.
bool IsFileName(std::u16string_view part);

/// Whether a part is the name of a device (NUL, COM1), with or without an extension.
bool IsDeviceName(std::u16string_view part);

/// Whether a host's name can be written in a Windows path: it is a file name, and no point or blank
/// falls off its end.
bool IsReachableName(std::u16string_view name);

/// Whether a file's name fits a pattern of `*` and `?`, without case. As FindFirstFile has it, a
/// `?` at the name's end or before a point also fits no character at all, and so does a point
/// before a wildcard at the name's end: "*.*" fits every name.
bool FitsPattern(std::u16string_view name, std::u16string_view pattern);

}  // namespace torvane::posix
