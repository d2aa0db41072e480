// Sizes of files in words, for the messages about those that aren't read.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace torvane {

/// More bytes no profile file is read with: no program writes them, and reading takes many times
/// the memory.
inline constexpr std::uint64_t kMostProfileBytes = std::uint64_t{64} << 20;

/// A number of bytes, "5.0 TB".
inline std::string SizeInWords(std::uint64_t bytes) {
  constexpr std::array kUnits{"bytes", "kB", "MB", "GB", "TB", "PB", "EB"};
  std::size_t unit = 0;
  auto count = static_cast<double>(bytes);
  for (; count >= 1024 && unit + 1 < kUnits.size(); ++unit) count /= 1024;
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), unit == 0 ? "%.0f" : "%.1f", count);
  return std::string(number.data()) + " " + kUnits[unit];
}

/// Why a file isn't read, in words that follow its name.
inline std::string SizesInWords(std::uint64_t size, std::uint64_t limit) {
  return "has " + SizeInWords(size) + ", and no more than " + SizeInWords(limit) + " are read";
}

}  // namespace torvane
