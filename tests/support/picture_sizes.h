// The directory at the head of a .ico or .cur file.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace torvane {

/// The widths of the pictures in each of the program's icons: what lists, title bars and tasks take
/// at the common scales.
inline const std::vector<int> kIconSizes{16, 20, 24, 32, 40, 48, 64, 256};

/// The widths in pixels of the square pictures in the file, in its order; empty if a picture isn't
/// square or lies outside the file.
inline std::vector<int> PictureSizes(std::span<const std::byte> file) {
  const auto number = [&](std::size_t at, std::size_t bytes) {
    std::size_t value = 0;
    while (bytes-- > 0) value = value << 8 | std::to_integer<std::size_t>(file[at + bytes]);
    return value;
  };
  std::vector<int> sizes;
  for (std::size_t entry = 6; entry < 6 + 16 * number(4, 2); entry += 16) {
    const int width = std::to_integer<int>(file[entry]);
    if (file[entry + 1] != file[entry]) return {};
    if (number(entry + 8, 4) + number(entry + 12, 4) > file.size()) return {};
    sizes.push_back(width == 0 ? 256 : width);
  }
  return sizes;
}

}  // namespace torvane
