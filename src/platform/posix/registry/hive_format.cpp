// Reading is a hand-written scanner over the file's bytes, since hives of many megabytes are read
// at every start. Writing gives what Wine itself writes for the same value, byte for byte, so that
// a hive which goes back and forth between the two stays as it is.
#include "platform/posix/registry/hive_format.h"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstring>
#include <optional>
#include <utility>

namespace torvane::posix {
namespace {

/// What stands behind the backslash for the units below 32; a point for those without a letter.
constexpr std::string_view kControlLetters = ".......abtnvfr.............e....";
constexpr std::uint64_t kTicksPerSecond = 10'000'000;
constexpr std::uint64_t kSecondsFrom1601To1970 = 11'644'473'600;
constexpr std::size_t kHexFoldColumn = 76;

int HexDigit(char byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

bool IsOctalDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'7';
}

bool IsHexUnit(char16_t unit) {
  return unit < 0x80 && HexDigit(static_cast<char>(unit)) >= 0;
}

bool IsBlank(char byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

const char* SkipBlanks(const char* at, const char* end) {
  while (at != end && IsBlank(*at)) ++at;
  return at;
}

/// The number at `at` as the C library's strtoul reads it in base 16, of which 32 bits are kept;
/// moves `at` behind it, and not at all where there is none.
std::uint32_t ReadNumber(const char*& at, const char* end) {
  const char* from = SkipBlanks(at, end);
  const bool isNegative = from != end && *from == '-';
  if (from != end && (*from == '-' || *from == '+')) ++from;
  if (end - from > 2 && from[0] == '0' && (from[1] | 0x20) == 'x' && HexDigit(from[2]) >= 0)
    from += 2;
  if (from == end || HexDigit(*from) < 0) return 0;
  std::uint64_t value = 0;
  bool isTooLarge = false;
  for (; from != end && HexDigit(*from) >= 0; ++from) {
    isTooLarge = isTooLarge || (value >> 60) != 0;
    value = value * 16 + static_cast<std::uint64_t>(HexDigit(*from));
  }
  at = from;
  if (isTooLarge) return 0xFFFFFFFF;
  return static_cast<std::uint32_t>(isNegative ? 0 - value : value);
}

/// Digits in any base, leading zeros up to `width`.
void AppendNumber(std::string& out, std::uint64_t value, unsigned base, std::size_t width = 1) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::array<char, 24> digits{};
  std::size_t first = digits.size();
  do {
    digits[--first] = kDigits[value % base];
    value /= base;
  } while (value != 0 || digits.size() - first < width);
  out.append(&digits[first], digits.size() - first);
}

void AppendEscape(std::string& out, char16_t unit, char16_t following) {
  if (unit > 127) {
    out += "\\x";
    AppendNumber(out, unit, 16, IsHexUnit(following) ? 4 : 1);
  } else if (unit >= 32) {
    out += {'\\', static_cast<char>(unit)};
  } else if (kControlLetters[unit] != '.') {
    out += {'\\', kControlLetters[unit]};
  } else {
    out += '\\';
    AppendNumber(out, unit, 8, IsOctalDigit(following) ? 3 : 1);
  }
}

/// Which of the ASCII characters stand for themselves where `special` have a meaning.
using PlainSet = std::array<bool, 128>;
constexpr PlainSet PlainBut(std::string_view special) {
  PlainSet plain{};
  for (std::size_t byte = 32; byte < plain.size(); ++byte) {
    const char letter = static_cast<char>(byte);
    plain[byte] = letter != '\\' && special.find(letter) == std::string_view::npos;
  }
  return plain;
}
constexpr PlainSet kPlainInQuotes = PlainBut("\"");
constexpr PlainSet kPlainInBrackets = PlainBut("[]");

void AppendEscaped(std::string& out, std::u16string_view text, const PlainSet& plain) {
  const auto isPlain = [&plain](char16_t unit) { return unit < plain.size() && plain[unit]; };
  while (!text.empty()) {
    const auto run = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isPlain) -
                                              text.begin());
    const std::size_t before = out.size();
    out.resize(before + run);
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(run),
                   out.begin() + static_cast<std::ptrdiff_t>(before),
                   [](char16_t unit) { return static_cast<char>(unit); });
    text.remove_prefix(run);
    if (text.empty()) return;
    AppendEscape(out, text[0], text.size() > 1 ? text[1] : u'\0');
    text.remove_prefix(1);
  }
}

void AppendQuoted(std::string& out, std::u16string_view text) {
  out += '"';
  AppendEscaped(out, text, kPlainInQuotes);
  out += '"';
}

/// The closing character of escaped text, `end` if there is none. An escape never ends a line.
const char* FindClosing(const char* at, const char* end, char closing) {
  const char* const begin = at;
  while (at != end) {
    const auto* const found =
        static_cast<const char*>(std::memchr(at, closing, static_cast<std::size_t>(end - at)));
    if (found == nullptr) return end;
    // One behind an odd number of backslashes is escaped.
    const char* escape = found;
    while (escape != begin && escape[-1] == '\\') --escape;
    if ((found - escape) % 2 == 0) return found;
    at = found + 1;
  }
  return end;
}

const char* WhyUnclosed(const char* begin, const char* end) {
  const char* at = begin;
  while (at != end) {
    if (*at == '\\' && ++at == end) return "it ends in the middle of an escape";
    ++at;
  }
  return "it ends in the middle of a text";
}

/// The parts of a value's data, the introduction parsed.
struct DataForm {
  enum class Kind { Text, Dword, Hex };
  Kind kind = Kind::Hex;
  DWORD type = REG_BINARY;
  const char* body = nullptr;  ///< behind the opening quote or the colon
};

struct NamedForm {
  std::string_view lead;
  DataForm::Kind kind;
  DWORD type;
};

constexpr std::array kForms = {
    NamedForm{"\"", DataForm::Kind::Text, REG_SZ},
    NamedForm{"dword:", DataForm::Kind::Dword, REG_DWORD},
    NamedForm{"hex:", DataForm::Kind::Hex, REG_BINARY},
    NamedForm{"str:\"", DataForm::Kind::Text, REG_SZ},
    NamedForm{"str(2):\"", DataForm::Kind::Text, REG_EXPAND_SZ},
    NamedForm{"str(7):\"", DataForm::Kind::Text, REG_MULTI_SZ},
};

std::optional<DataForm> FormOf(std::string_view data) {
  for (const NamedForm& form : kForms)
    if (data.starts_with(form.lead))
      return DataForm{form.kind, form.type, data.data() + form.lead.size()};
  constexpr std::string_view kTypedHex = "hex(";
  if (!data.starts_with(kTypedHex)) return std::nullopt;
  DataForm form;
  const char* at = data.data() + kTypedHex.size();
  const char* const end = data.data() + data.size();
  form.type = ReadNumber(at, end);
  if (end - at < 2 || at[0] != ')' || at[1] != ':') return std::nullopt;
  form.body = at + 2;
  return form;
}

enum class HexList { Bytes, StrayComma, NoList };

/// Calls `take` with each byte of a list of hexadecimal numbers, which a backslash carries on to
/// the next line, whatever stands behind it. What comes behind a stray comma is only looked at.
template <typename Take>
HexList ForEachHexByte(const char* at, const char* end, Take take) {
  auto result = HexList::Bytes;
  while (at != end) {
    if (HexDigit(*at) >= 0) {
      const std::uint32_t value = ReadNumber(at, end);
      if (value > 0xFF) return HexList::NoList;
      if (result == HexList::Bytes) take(static_cast<char>(value));
      at = SkipBlanks(at, end);
      if (at != end && *at == ',') ++at;
      at = SkipBlanks(at, end);
    } else if (*at == '\\') {
      at = SkipBlanks(std::find(at, end, '\n'), end);
    } else if (*at == ',') {
      result = HexList::StrayComma;
      ++at;
    } else if (IsBlank(*at)) {
      at = SkipBlanks(at, end);
      if (at != end && *at != '\\') result = HexList::StrayComma;
    } else {
      return HexList::NoList;
    }
  }
  return result;
}

std::string_view TextBody(const DataForm& form, const char* end) {
  return {form.body, static_cast<std::size_t>(FindClosing(form.body, end, '"') - form.body)};
}

std::string LittleEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>((value >> shift) & 0xFF);
  return bytes;
}

/// Text that closes with a NUL and has whole units is written as such, all else by its bytes.
bool IsWrittenAsText(const ValueData& data) {
  if (data.type != REG_SZ && data.type != REG_EXPAND_SZ && data.type != REG_MULTI_SZ) return false;
  const std::size_t size = data.bytes.size();
  return size >= 2 && size % 2 == 0 && data.bytes[size - 1] == '\0' && data.bytes[size - 2] == '\0';
}

void AppendHex(std::string& line, const ValueData& data) {
  line += "hex";
  if (data.type != REG_BINARY) {
    line += '(';
    AppendNumber(line, data.type, 16);
    line += ')';
  }
  line += ':';
  std::size_t column = line.size();
  for (std::size_t i = 0; i < data.bytes.size(); ++i) {
    AppendNumber(line, static_cast<unsigned char>(data.bytes[i]), 16, 2);
    if (i + 1 == data.bytes.size()) break;
    line += ',';
    column += 3;
    if (column > kHexFoldColumn) {
      line += "\\\n  ";
      column = 2;
    }
  }
}

}  // namespace

/// The next unit where it isn't a plain ASCII character.
bool TextReader::nextOdd(char16_t& unit) {
  if (low_ != 0) {
    unit = std::exchange(low_, u'\0');
    return true;
  }
  while (at_ != end_) {
    std::optional<char16_t> read;
    if (*at_ == '\\') {
      ++at_;
      read = escape();
    } else {
      read = utf8();
    }
    if (!read) continue;
    unit = *read;
    return true;
  }
  return false;
}

/// What stands behind a backslash.
std::optional<char16_t> TextReader::escape() {
  if (at_ == end_) return u'\\';
  const char byte = *at_;
  const std::size_t letter = kControlLetters.find(byte);
  if (byte != '.' && letter != std::string_view::npos) {
    ++at_;
    return static_cast<char16_t>(letter);
  }
  if (byte == 'x' && at_ + 1 != end_ && HexDigit(at_[1]) >= 0) {
    int value = 0;
    ++at_;
    for (int i = 0; i < 4 && at_ != end_ && HexDigit(*at_) >= 0; ++i)
      value = value * 16 + HexDigit(*at_++);
    return static_cast<char16_t>(value);
  }
  if (byte >= '0' && byte <= '7') {
    int value = 0;
    for (int i = 0; i < 3 && at_ != end_ && *at_ >= '0' && *at_ <= '7'; ++i)
      value = value * 8 + (*at_++ - '0');
    return static_cast<char16_t>(value);
  }
  return utf8();
}

/// A character of UTF-8. Like Wine, passes over what is none, and takes half of a surrogate pair
/// for a character.
std::optional<char16_t> TextReader::utf8() {
  constexpr std::array<char32_t, 4> kSmallest{0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(*at_++);
  if (lead < 0x80) return lead;
  if (lead < 0xC2 || lead > 0xF4) return std::nullopt;
  const std::size_t following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  char32_t character = lead & (0x3FU >> following);
  for (std::size_t i = 0; i < following; ++i) {
    const unsigned next = at_ != end_ ? static_cast<unsigned char>(*at_) : 0U;
    if ((next & 0xC0U) != 0x80) return std::nullopt;
    character = (character << 6U) | (next & 0x3FU);
    ++at_;
  }
  if (character < kSmallest[following] || character > 0x10FFFF) return std::nullopt;
  if (character < 0x10000) return static_cast<char16_t>(character);
  low_ = static_cast<char16_t>(0xDC00U | (character & 0x3FFU));
  return static_cast<char16_t>(0xD7C0U + (character >> 10U));
}

std::u16string DecodeText(std::string_view source) {
  // Each unit has at least one byte of its own in the source.
  std::u16string text(source.size(), u'\0');
  TextReader reader(source);
  char16_t* at = text.data();
  char16_t* const end = at + text.size();
  do {
    at = reader.nextPlain(at);
  } while (at != end && reader.next(*at) && ++at != end);
  text.resize(static_cast<std::size_t>(at - text.data()));
  return text;
}

std::size_t CountUnits(std::string_view source) {
  std::size_t count = 0;
  TextReader reader(source);
  for (char16_t unit = 0; reader.next(unit);) ++count;
  return count;
}

std::string EscapePath(std::u16string_view path) {
  std::string escaped;
  AppendEscaped(escaped, path, kPlainInBrackets);
  return escaped;
}

std::uint32_t HashName(std::string_view source) {
  NameHash hash;
  TextReader reader(source);
  for (char16_t unit = 0; reader.next(unit);) hash.add(unit);
  return hash.value();
}

bool SameName(std::string_view source, std::u16string_view name) {
  TextReader reader(source);
  char16_t unit = 0;
  for (const char16_t wanted : name)
    if (!reader.next(unit) || FoldCase(unit) != FoldCase(wanted)) return false;
  return !reader.next(unit);
}

bool SameName(std::string_view source, std::string_view other) {
  if (source == other) return true;
  TextReader left(source);
  TextReader right(other);
  char16_t leftUnit = 0;
  char16_t rightUnit = 0;
  while (left.next(leftUnit))
    if (!right.next(rightUnit) || FoldCase(leftUnit) != FoldCase(rightUnit)) return false;
  return !right.next(rightUnit);
}

std::u16string UnitsOf(std::string_view bytes) {
  std::u16string text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i)
    text[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                    (static_cast<unsigned char>(bytes[2 * i + 1]) << 8));
  return text;
}

std::string BytesOf(std::u16string_view text) {
  std::string bytes(text.size() * 2, '\0');
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(bytes.data(), text.data(), bytes.size());
    return bytes;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    bytes[2 * i] = static_cast<char>(text[i] & 0xFF);
    bytes[2 * i + 1] = static_cast<char>(text[i] >> 8);
  }
  return bytes;
}

ValueData DecodeData(std::string_view source) {
  ValueData data;
  const std::optional<DataForm> form = FormOf(source);
  if (!form) return data;
  const char* const end = source.data() + source.size();
  data.type = form->type;
  if (form->kind == DataForm::Kind::Text) {
    data.bytes = BytesOf(DecodeText(TextBody(*form, end)) + u'\0');
  } else if (form->kind == DataForm::Kind::Dword) {
    const char* at = form->body;
    data.bytes = LittleEndian(ReadNumber(at, end));
  } else {
    const auto list = ForEachHexByte(form->body, end, [&](char byte) { data.bytes += byte; });
    if (list != HexList::Bytes) return {};
  }
  return data;
}

std::optional<std::u16string> WrittenText(std::string_view source) {
  const std::optional<DataForm> form = FormOf(source);
  if (!form || form->kind != DataForm::Kind::Text) return std::nullopt;
  return DecodeText(TextBody(*form, source.data() + source.size())) + u'\0';
}

DWORD DataType(std::string_view source) {
  const std::optional<DataForm> form = FormOf(source);
  if (!form) return REG_NONE;
  const char* const end = source.data() + source.size();
  const bool isList = form->kind != DataForm::Kind::Hex ||
                      ForEachHexByte(form->body, end, [](char) {}) == HexList::Bytes;
  return isList ? form->type : REG_NONE;
}

std::size_t DataSize(std::string_view source) {
  const std::optional<DataForm> form = FormOf(source);
  if (!form) return 0;
  const char* const end = source.data() + source.size();
  if (form->kind == DataForm::Kind::Text) return 2 * (CountUnits(TextBody(*form, end)) + 1);
  if (form->kind == DataForm::Kind::Dword) return sizeof(DWORD);
  std::size_t size = 0;
  const auto list = ForEachHexByte(form->body, end, [&](char) { ++size; });
  return list == HexList::Bytes ? size : 0;
}

ValueLine WriteValueLine(std::u16string_view name, const ValueData& data) {
  ValueLine line;
  std::string& text = line.text;
  text.reserve(name.size() + data.bytes.size() / 2 + 16);
  if (name.empty()) {
    text += '@';
  } else {
    AppendQuoted(text, name);
    line.nameSize = text.size() - 2;
  }
  text += '=';
  line.dataAt = text.size();
  if (IsWrittenAsText(data)) {
    if (data.type != REG_SZ) {
      text += "str(";
      AppendNumber(text, data.type, 16);
      text += "):";
    }
    std::u16string units = UnitsOf(data.bytes);
    units.pop_back();
    AppendQuoted(text, units);
  } else if (data.type == REG_DWORD && data.bytes.size() == sizeof(DWORD)) {
    const std::u16string halves = UnitsOf(data.bytes);
    text += "dword:";
    AppendNumber(text, (std::uint32_t{halves[1]} << 16) | halves[0], 16, 8);
  } else {
    AppendHex(text, data);
  }
  text += '\n';
  return line;
}

/// Passes over one physical line; gives its end without the line end, which a file's last need not
/// have.
const char* LineScanner::endOfLine() {
  ++lines_;
  const char* const begin = at_;
  const void* found = std::memchr(at_, '\n', static_cast<std::size_t>(end_ - at_));
  const char* end = found != nullptr ? static_cast<const char*>(found) : end_;
  at_ = found != nullptr ? end + 1 : end;
  if (end != begin && end[-1] == '\r') --end;
  return end;
}

bool LineScanner::next(HiveLine& line) {
  if (at_ == end_) return false;
  line = {};
  const char* const begin = at_;
  scanLine(line, begin, endOfLine());
  line.text = {begin, static_cast<std::size_t>(at_ - begin)};
  return true;
}

void LineScanner::scanLine(HiveLine& line, const char* begin, const char* end) {
  const char* const at = SkipBlanks(begin, end);
  if (at == end) {
    line.kind = HiveLine::Kind::Blank;
  } else if (*at == '#' || *at == ';') {
    line.kind = *at == '#' ? HiveLine::Kind::Option : HiveLine::Kind::Comment;
    line.rest = {at, static_cast<std::size_t>(end - at)};
  } else if (*at == '[') {
    scanKey(line, at + 1, end);
  } else if (*at == '"' || *at == '@') {
    scanValue(line, at, end);
  } else {
    line.problem = "it is none of a registry file";
  }
  // To Wine it ends the line, which nobody has meant: such a file is damaged.
  if (std::memchr(begin, '\0', static_cast<std::size_t>(end - begin)) != nullptr)
    line.problem = "there are binary bytes in it";
}

void LineScanner::scanKey(HiveLine& line, const char* at, const char* end) {
  line.kind = HiveLine::Kind::Key;
  const char* const closing = FindClosing(at, end, ']');
  if (closing == end) {
    line.problem = WhyUnclosed(at, end);
    return;
  }
  line.name = {at, static_cast<std::size_t>(closing - at)};
  const char* const digits = SkipBlanks(closing + 1, end);
  at = digits;
  while (at != end && *at >= '0' && *at <= '9') ++at;
  line.rest = {digits, static_cast<std::size_t>(at - digits)};
}

void LineScanner::scanValue(HiveLine& line, const char* at, const char* end) {
  line.kind = HiveLine::Kind::Value;
  if (*at == '@') {
    ++at;
  } else {
    const char* const closing = FindClosing(++at, end, '"');
    if (closing == end) {
      line.problem = WhyUnclosed(at, end);
      return;
    }
    line.name = {at, static_cast<std::size_t>(closing - at)};
    at = closing + 1;
  }
  at = SkipBlanks(at, end);
  if (at == end || *at != '=') {
    line.problem = "the value has no data";
    return;
  }
  const char* const data = SkipBlanks(at + 1, end);
  const char* const dataEnd = scanData(line, data, end);
  line.rest = {data, static_cast<std::size_t>(dataEnd - data)};
}

/// Gives the end of the data.
const char* LineScanner::scanData(HiveLine& line, const char* at, const char* end) {
  const std::optional<DataForm> form = FormOf({at, static_cast<std::size_t>(end - at)});
  if (!form) {
    line.problem = "its data has no known form";
    return end;
  }
  at = form->body;
  if (form->kind == DataForm::Kind::Hex) return scanHex(line, at, end);
  if (form->kind == DataForm::Kind::Dword) {
    ReadNumber(at, end);
    return at;
  }
  const char* const closing = FindClosing(at, end, '"');
  if (closing != end) return closing + 1;
  line.problem = WhyUnclosed(at, end);
  return end;
}

const char* LineScanner::scanHex(HiveLine& line, const char* at, const char* end) {
  const char* const begin = at;
  while (std::find(at, end, '\\') != end) {
    if (at_ == end_) {
      line.problem = "the file is cut here";
      return end;
    }
    at = at_;
    end = endOfLine();
  }
  if (ForEachHexByte(begin, end, [](char) {}) == HexList::NoList)
    line.problem = "its bytes aren't hexadecimal";
  return end;
}

std::string_view ClassText(std::string_view line) {
  const char* const begin = line.data() + kClassOption.size();
  return {begin,
          static_cast<std::size_t>(FindClosing(begin, line.data() + line.size(), '"') - begin)};
}

std::uint64_t ParseTime(std::string_view hexadecimal) {
  std::uint64_t time = 0;
  for (const char byte : hexadecimal) {
    if (HexDigit(byte) < 0) break;
    time = time * 16 + static_cast<std::uint64_t>(HexDigit(byte));
  }
  return time;
}

std::string TimeDigits(std::uint64_t time) {
  std::string digits;
  AppendNumber(digits, time, 16);
  return digits;
}

std::uint64_t TimeFromSeconds(std::string_view decimal) {
  std::uint64_t seconds = 0;
  for (const char byte : decimal) seconds = seconds * 10 + static_cast<std::uint64_t>(byte - '0');
  seconds = static_cast<std::uint32_t>(seconds);
  return (seconds + kSecondsFrom1601To1970) * kTicksPerSecond;
}

std::uint64_t SecondsFromTime(std::uint64_t time) {
  return time / kTicksPerSecond - kSecondsFrom1601To1970;
}

std::uint64_t HiveTimeNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(now).count();
  return static_cast<std::uint64_t>(microseconds) * 10 + kSecondsFrom1601To1970 * kTicksPerSecond;
}

}  // namespace torvane::posix
