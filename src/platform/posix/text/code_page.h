// Text in an ANSI code page and in UTF-8. Which page the prefix has, the registry knows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::posix {

/// An ANSI code page of Windows: one of single bytes, of one or two bytes a character, or UTF-8.
class CodePage {
 public:
  /// `page` is the number of Windows. One that can't be converted counts as 1252.
  explicit CodePage(unsigned page);

  /// 16-bit text of bytes. A byte that stands for nothing becomes the unit that Windows gives it.
  std::u16string decode(std::string_view bytes) const;
  /// Bytes of text; '?' stands for a character outside the page.
  std::string encode(std::u16string_view text) const;
  /// Whether each 16-bit unit takes one byte.
  bool isSingleByte() const { return !utf8_ && pairs_.empty(); }

 private:
  class Converter;

  static bool CanConvert(unsigned page);
  void fill(unsigned page);
  void fillPairs(unsigned lead, Converter& decoder, Converter& encoder);
  void fillUserRows(unsigned page);
  void keepCode(char16_t unit, unsigned code, Converter& encoder);
  char16_t decodePair(unsigned char lead, unsigned char trail) const {
    const char16_t unit = pairs_[(std::size_t{lead} << 8U) | trail];
    return unit != 0 ? unit : undefinedPair_;
  }

  bool utf8_;
  char16_t undefinedPair_ = u'?';
  std::vector<char16_t> single_;      ///< by byte; 0xFFFF for a lead byte
  std::vector<char16_t> pairs_;       ///< by lead and trail byte, 0 for none
  std::vector<std::uint16_t> codes_;  ///< by unit: byte, or lead and trail byte; '?' for none
};

/// Between 16-bit text and UTF-8; ill-formed input becomes U+FFFD.
std::u16string FromUtf8(std::string_view bytes);
std::string ToUtf8(std::u16string_view text);

}  // namespace torvane::posix
