// The pictures among the resources that the Linux views take as they are; the rest is in extras.h.
#pragma once

#include <cstddef>
#include <span>

namespace torvane {

/// Icon `id` (resource_numbers.h) as a whole .ico file, valid to the program's end: the application
/// (16 to 256 pixels) or a program in the tree (16 to 48). Throws std::runtime_error for any other.
std::span<const std::byte> IconResource(int id);

/// Cursor `id` as a whole .cur file of 32 by 32 pixels, hotspot inside, valid to the program's end:
/// the hand over links. Throws std::runtime_error for any other.
std::span<const std::byte> CursorResource(int id);

}  // namespace torvane
