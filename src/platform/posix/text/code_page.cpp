// The ANSI code page as tables. They are filled from iconv once, so that a conversion is a look-up
// a character: names and values cross this border by the hundred thousand. Double-byte pages have a
// second table by lead and trail byte; UTF-8 as the code page goes the way of the UTF-8 functions.
#include "platform/posix/text/code_page.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "platform/winapi.h"

namespace torvane::posix {
namespace {

constexpr unsigned kWestern = 1252;
constexpr unsigned kUtf8 = 65001;
constexpr char16_t kReplacement = 0xFFFD;
constexpr char16_t kLead = 0xFFFF;
constexpr std::size_t kUnits = 0x10000;
constexpr std::uint16_t kNoCode = '?';

}  // namespace

/// One direction of iconv for single characters.
class CodePage::Converter {
 public:
  Converter(const std::string& to, const std::string& from)
      : state_(iconv_open(to.c_str(), from.c_str())) {}
  ~Converter() {
    if (valid()) iconv_close(state_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool valid() const { return reinterpret_cast<std::intptr_t>(state_) != -1; }

  /// The bytes of one converted character; nothing where it has no counterpart or is incomplete.
  std::optional<std::string> convert(std::string_view input) {
    if (!valid()) return std::nullopt;
    iconv(state_, nullptr, nullptr, nullptr, nullptr);
    std::string in(input);
    std::array<char, 16> out{};
    char* source = in.data();
    std::size_t sourceLeft = in.size();
    char* target = out.data();
    std::size_t targetLeft = out.size();
    constexpr auto kFailed = static_cast<std::size_t>(-1);
    // A positive result counts characters that iconv replaced by something similar.
    if (iconv(state_, &source, &sourceLeft, &target, &targetLeft) != 0) return std::nullopt;
    if (iconv(state_, nullptr, nullptr, &target, &targetLeft) == kFailed) return std::nullopt;
    return std::string(out.data(), out.size() - targetLeft);
  }

  /// The same for a conversion to UTF-16; a character beyond 16 bits is none.
  std::optional<char16_t> unit(std::string_view input) {
    const auto utf16 = convert(input);
    char16_t unit = 0;
    if (!utf16 || utf16->size() != sizeof unit) return std::nullopt;
    std::memcpy(&unit, utf16->data(), sizeof unit);
    return unit;
  }

 private:
  iconv_t state_;
};

namespace {

/// Single bytes that Windows gives a unit of its own choice, mostly of the private use area,
/// because the page leaves them undefined. Any other undefined byte stands for its own number.
struct ByteRange {
  unsigned page;
  unsigned char first;
  unsigned char last;
  char16_t unit;
};
constexpr ByteRange kWindowsBytes[] = {
    {874, 0xDB, 0xDE, 0xF8C1},  {874, 0xFC, 0xFF, 0xF8C5},  {1253, 0xAA, 0xAA, 0xF8F9},
    {1253, 0xD2, 0xD2, 0xF8FA}, {1253, 0xFF, 0xFF, 0xF8FB}, {1255, 0xCA, 0xCA, 0x05BA},
    {1255, 0xD9, 0xDF, 0xF88D}, {1255, 0xFB, 0xFC, 0xF894}, {1255, 0xFF, 0xFF, 0xF896},
    {1257, 0xA1, 0xA1, 0xF8FC}, {1257, 0xA5, 0xA5, 0xF8FD}, {932, 0xA0, 0xA0, 0xF8F0},
    {932, 0xFD, 0xFF, 0xF8F1},  {936, 0x80, 0x80, 0x20AC},  {936, 0xFF, 0xFF, 0xF8F5},
    {949, 0xFF, 0xFF, 0xF8F7},  {950, 0xFF, 0xFF, 0xF8F8},
};

std::optional<char16_t> WindowsUnit(unsigned page, unsigned byte) {
  for (const ByteRange& range : kWindowsBytes) {
    if (range.page == page && byte >= range.first && byte <= range.last) {
      return static_cast<char16_t>(range.unit + (byte - range.first));
    }
  }
  return std::nullopt;
}

bool IsLeadByte(unsigned page, unsigned byte) {
  switch (page) {
    case 932:
      return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    case 936:
    case 949:
    case 950:
      return byte >= 0x81 && byte <= 0xFE;
    default:
      return false;
  }
}

/// The user-defined characters of the double-byte pages, of which glibc has none: rows of trail
/// bytes that count on through the private use area. Page 936 has no trail byte 0x7F, page 950 none
/// from 0x7F to 0xA0.
struct UserRows {
  unsigned page;
  unsigned firstLead;
  unsigned lastLead;
  unsigned firstTrail;
  unsigned lastTrail;
  char16_t unit;
};
constexpr UserRows kUserRows[] = {
    {936, 0xAA, 0xAF, 0xA1, 0xFE, 0xE000}, {936, 0xF8, 0xFE, 0xA1, 0xFE, 0xE234},
    {936, 0xA1, 0xA7, 0x40, 0xA0, 0xE4C6}, {949, 0xC9, 0xC9, 0xA1, 0xFE, 0xE000},
    {949, 0xFE, 0xFE, 0xA1, 0xFE, 0xE05E}, {950, 0xFA, 0xFE, 0x40, 0xFE, 0xE000},
    {950, 0x8E, 0xA0, 0x40, 0xFE, 0xE311}, {950, 0x81, 0x8D, 0x40, 0xFE, 0xEEB8},
    {950, 0xC6, 0xC8, 0xA1, 0xFE, 0xF6B1},
};

std::string IconvName(unsigned page) {
  return (page == 874 ? "WINDOWS-" : "CP") + std::to_string(page);
}

/// The length of the well-formed UTF-8 sequence at the front of `bytes` with its character, or of
/// the ill-formed part that one U+FFFD stands for.
std::pair<std::size_t, char32_t> NextUtf8(std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  if (lead < 0x80) return {1, lead};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return {1, kReplacement};
  // The second byte's range shuts out overlong forms, surrogates and what lies above U+10FFFF.
  unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  char32_t character = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned next = i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
    if (next < low || next > high) return {i, kReplacement};
    character = (character << 6U) | (next & 0x3FU);
    low = 0x80;
    high = 0xBF;
  }
  return {length, character};
}

void AppendUtf8(std::string& bytes, char32_t character) {
  const auto continuation = [character](unsigned shift) {
    return static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
  };
  if (character < 0x80) {
    bytes += static_cast<char>(character);
  } else if (character < 0x800) {
    bytes += {static_cast<char>(0xC0U | (character >> 6U)), continuation(0)};
  } else if (character < 0x10000) {
    bytes += {static_cast<char>(0xE0U | (character >> 12U)), continuation(6), continuation(0)};
  } else {
    bytes += {static_cast<char>(0xF0U | (character >> 18U)), continuation(12), continuation(6),
              continuation(0)};
  }
}

bool IsHighSurrogate(char16_t unit) {
  return (unit & 0xFC00U) == 0xD800U;
}
bool IsLowSurrogate(char16_t unit) {
  return (unit & 0xFC00U) == 0xDC00U;
}

}  // namespace

CodePage::CodePage(unsigned page) : utf8_(page == kUtf8) {
  if (!utf8_) fill(CanConvert(page) ? page : kWestern);
}

bool CodePage::CanConvert(unsigned page) {
  return page == kUtf8 || Converter("UTF-16LE", IconvName(page)).valid();
}

void CodePage::fill(unsigned page) {
  Converter decoder("UTF-16LE", IconvName(page));
  Converter encoder(IconvName(page), "UTF-16LE");
  single_.assign(256, 0);
  codes_.assign(kUnits, kNoCode);
  if (page == 932) undefinedPair_ = u'\u30FB';
  for (unsigned byte = 0; byte < 256; ++byte) {
    if (IsLeadByte(page, byte)) {
      single_[byte] = kLead;
      fillPairs(byte, decoder, encoder);
      continue;
    }
    const char code = static_cast<char>(byte);
    auto unit = WindowsUnit(page, byte);
    if (!unit) unit = decoder.unit({&code, 1});
    single_[byte] = unit.value_or(static_cast<char16_t>(byte));
    keepCode(single_[byte], byte, encoder);
  }
  fillUserRows(page);
}

void CodePage::fillUserRows(unsigned page) {
  for (const UserRows& rows : kUserRows) {
    if (rows.page != page) continue;
    char16_t unit = rows.unit;
    for (unsigned lead = rows.firstLead; lead <= rows.lastLead; ++lead) {
      for (unsigned trail = rows.firstTrail; trail <= rows.lastTrail; ++trail) {
        if (trail == 0x7F || (rows.page == 950 && trail > 0x7F && trail < 0xA1)) continue;
        const unsigned code = (lead << 8U) | trail;
        if (pairs_[code] == 0) pairs_[code] = unit;
        if (codes_[unit] == kNoCode) codes_[unit] = static_cast<std::uint16_t>(code);
        ++unit;
      }
    }
  }
}

void CodePage::fillPairs(unsigned lead, Converter& decoder, Converter& encoder) {
  if (pairs_.empty()) pairs_.assign(kUnits, 0);
  for (unsigned trail = 0x40; trail < 0xFF; ++trail) {
    const std::array<char, 2> code{static_cast<char>(lead), static_cast<char>(trail)};
    const auto unit = decoder.unit({code.data(), code.size()});
    if (!unit) continue;
    pairs_[(lead << 8U) | trail] = *unit;
    keepCode(*unit, (lead << 8U) | trail, encoder);
  }
}

void CodePage::keepCode(char16_t unit, unsigned code, Converter& encoder) {
  std::uint16_t& kept = codes_[unit];
  if (kept != kNoCode) {
    // Several codes stand for this character; iconv knows which of them is the one to write.
    std::array<char, sizeof unit> utf16{};
    std::memcpy(utf16.data(), &unit, sizeof unit);
    const auto best = encoder.convert({utf16.data(), utf16.size()});
    unsigned bestCode = 0;
    for (const char byte : best.value_or("")) {
      bestCode = (bestCode << 8U) | static_cast<unsigned char>(byte);
    }
    if (bestCode != code) return;
  }
  kept = static_cast<std::uint16_t>(code);
}

std::u16string CodePage::decode(std::string_view bytes) const {
  if (utf8_) return FromUtf8(bytes);
  std::u16string text(bytes.size(), u'\0');
  if (isSingleByte()) {
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [this](char byte) { return single_[static_cast<unsigned char>(byte)]; });
    return text;
  }
  std::size_t length = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    char16_t unit = single_[byte];
    if (unit == kLead) {
      // A lead byte without its trail byte leaves the closing NUL alone.
      const bool alone = i + 1 == bytes.size() || bytes[i + 1] == '\0';
      unit = alone ? undefinedPair_ : decodePair(byte, static_cast<unsigned char>(bytes[++i]));
    }
    text[length++] = unit;
  }
  text.resize(length);
  return text;
}

std::string CodePage::encode(std::u16string_view text) const {
  if (utf8_) return ToUtf8(text);
  std::string bytes;
  if (isSingleByte()) {
    bytes.resize(text.size());
    std::transform(text.begin(), text.end(), bytes.begin(),
                   [this](char16_t unit) { return static_cast<char>(codes_[unit]); });
    return bytes;
  }
  bytes.reserve(text.size());
  for (const char16_t unit : text) {
    const std::uint16_t code = codes_[unit];
    if (code > 0xFF) bytes.push_back(static_cast<char>(code >> 8U));
    bytes.push_back(static_cast<char>(code));
  }
  return bytes;
}

std::u16string FromUtf8(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const auto [length, character] = NextUtf8(bytes);
    bytes.remove_prefix(length);
    if (character < 0x10000) {
      text.push_back(static_cast<char16_t>(character));
    } else {
      text.push_back(static_cast<char16_t>(0xD7C0U + (character >> 10U)));
      text.push_back(static_cast<char16_t>(0xDC00U | (character & 0x3FFU)));
    }
  }
  return text;
}

std::string ToUtf8(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t character = text[i];
    if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      character = 0x10000U + ((character & 0x3FFU) << 10U) + (text[++i] & 0x3FFU);
    } else if (IsHighSurrogate(text[i]) || IsLowSurrogate(text[i])) {
      character = kReplacement;
    }
    AppendUtf8(bytes, character);
  }
  return bytes;
}

}  // namespace torvane::posix
