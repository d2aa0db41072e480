// How many of the lists that the catalogue names have entries in a prefix that isn't opened.
#pragma once

#include <filesystem>

namespace torvane::posix {

/// Reads the prefix's files once and keeps nothing. What can't be read counts as empty.
int CountKnownLists(const std::filesystem::path& prefix);

}  // namespace torvane::posix
