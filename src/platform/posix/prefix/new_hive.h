// What a hive without keys holds: all that one must know of hives to make a prefix.
#pragma once

#include <string>
#include <string_view>

namespace torvane::posix {

inline constexpr std::string_view kHiveFirstLine = "WINE REGISTRY Version 2";

/// What a hive's paths begin at.
enum class HiveRoot { User, Machine };

/// What stands before the keys of a new hive; `architecture` is an "#arch=" line's value, which is
/// left out where that is empty.
std::string NewHive(HiveRoot root, std::string_view architecture);

}  // namespace torvane::posix
