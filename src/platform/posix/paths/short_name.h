// The short names that Wine gives to files: eight characters, a point and three. Programs of old
// store them, and no folder on the host knows them.
#pragma once

#include <string>
#include <string_view>

namespace torvane::posix {

/// Whether a name is short as it stands, so that it has no second one.
bool IsShortName(std::u16string_view name);

/// Whether a name may be one that ShortName has made.
bool MayBeMadeShort(std::u16string_view name);

/// The short name of a file whose name isn't short, in capitals: its first four characters, '~' up
/// to the fifth, three that stand for a hash of the whole name, and three of what is behind its
/// last point.
std::u16string ShortName(std::u16string_view name);

}  // namespace torvane::posix
