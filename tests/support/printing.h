// Lets a failing test print the program's 16-bit text.
#pragma once

#include <ostream>
#include <string>

namespace std {

/// Printable ASCII as it is, every other unit as its number.
inline ostream& operator<<(ostream& out, const u16string& text) {
  for (const char16_t unit : text) {
    if (unit >= 0x20 && unit < 0x7F) {
      out << static_cast<char>(unit);
    } else {
      out << "\\u{" << hex << static_cast<unsigned>(unit) << dec << "}";
    }
  }
  return out;
}

}  // namespace std
