// The ANSI code page of the prefix, and text in it.
#pragma once

#include <string>
#include <string_view>

namespace torvane::posix {

/// 16-bit text of bytes in the prefix's code page (value ACP of the prefix, else 1252).
std::u16string FromCodePage(std::string_view bytes);
/// Bytes in the prefix's code page; '?' stands for a character outside it.
std::string ToCodePage(std::u16string_view text);

/// Whether each 16-bit unit takes one byte in the prefix's code page.
bool IsSingleByteCodePage();

/// Between 16-bit text and UTF-8; ill-formed input becomes U+FFFD.
std::u16string FromUtf8(std::string_view bytes);
std::string ToUtf8(std::u16string_view text);

/// Lower case unit by unit, for comparing names without case.
char16_t FoldBeyondAscii(char16_t unit);
inline char16_t FoldCase(char16_t unit) {
  if (unit >= 0x80) return FoldBeyondAscii(unit);
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20U) : unit;
}
std::u16string FoldCase(std::u16string_view text);

}  // namespace torvane::posix
