// Text as the program holds it, its two crossings, into the ANSI code page and into lower case, and
// its use as a name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace torvane {

/// 16-bit text: UTF-16 code units, embedded NULs allowed.
using Text = std::u16string;
using TextView = std::u16string_view;

/// Bytes of the system's ANSI code page; a character outside the page becomes its default
/// character.
std::string ToAnsi(TextView text);
/// Text of bytes in the system's ANSI code page.
Text FromAnsi(std::string_view bytes);

/// Whether two texts are equal: what the standard library asks unit by unit, many at a time.
bool SameText(TextView left, TextView right);

/// Lower case for showing, unit by unit. What it gives is, as a name, the name that it was given.
Text LowerCase(Text text);

/// Whether two names of keys, values, files or folders are one, as the system compares them:
/// without case, unit by unit.
bool SameName(TextView left, TextView right);
/// The order of names that are told apart by SameName, for sets and maps of them.
struct NameOrder {
  using is_transparent = void;
  bool operator()(TextView left, TextView right) const;
};

/// Decimal text without leading zeros, a minus sign ahead of a negative number.
Text Decimal(std::int64_t number);

/// The part ahead of the first NUL, or all of `text` if it has none: for buffers that a system call
/// filled.
Text StripAtNull(const Text& text);

}  // namespace torvane
