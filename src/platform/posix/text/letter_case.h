// Upper and lower case as names have it: unit by unit, and only where the way back leads to the
// same unit. So the Kelvin sign is no K, a dotted capital I no i, and surrogates have no case.
#pragma once

#include <string>
#include <string_view>

namespace torvane::posix {

/// The small letter of a unit, or the unit itself: two units are one in names where this gives the
/// same for both.
char16_t FoldBeyondAscii(char16_t unit);
inline char16_t FoldCase(char16_t unit) {
  if (unit >= 0x80) return FoldBeyondAscii(unit);
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20U) : unit;
}
std::u16string FoldCase(std::u16string_view text);

/// The capital letter that FoldCase leads back from, or the unit itself.
char16_t UnfoldCase(char16_t unit);

}  // namespace torvane::posix
