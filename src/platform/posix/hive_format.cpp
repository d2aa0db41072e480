// Reading is a hand-written scanner over the file's bytes, since hives of many megabytes are read
// at every start. Writing gives what Wine itself writes for the same value, byte for byte, so that
// a hive which goes back and forth between the two stays as it is.
#include "platform/posix/hive_format.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <optional>

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
  return byte == ' ' || byte == '\t';
}

const char* SkipBlanks(const char* at, const char* end) {
  while (at != end && IsBlank(*at)) ++at;
  return at;
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
  while (at != end && *at != closing) {
    if (*at == '\\') {
      if (++at == end) return end;
    }
    ++at;
  }
  return at;
}

const char* WhyUnclosed(const char* begin, const char* end) {
  const char* at = begin;
  while (at != end) {
    if (*at == '\\' && ++at == end) return "it ends in the middle of an escape";
    ++at;
  }
  return "it ends in the middle of a text";
}

bool HasControl(const char* at, const char* end) {
  return std::any_of(at, end, [](char byte) {
    return static_cast<unsigned char>(byte) < 32 && byte != '\t' && byte != '\r';
  });
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
  constexpr std::size_t kTypeDigits = 8;
  if (!data.starts_with(kTypedHex)) return std::nullopt;
  DataForm form;
  form.type = 0;
  const char* at = data.data() + kTypedHex.size();
  const char* const end = data.data() + data.size();
  std::size_t digits = 0;
  for (; at != end && HexDigit(*at) >= 0; ++at, ++digits)
    form.type = form.type * 16 + static_cast<DWORD>(HexDigit(*at));
  if (digits == 0 || digits > kTypeDigits || end - at < 2 || at[0] != ')' || at[1] != ':')
    return std::nullopt;
  form.body = at + 2;
  return form;
}

/// Calls `take` with each byte of a list of hexadecimal numbers.
template <typename Take>
void ForEachHexByte(const char* at, const char* end, Take take) {
  while (at != end) {
    int value = HexDigit(*at++);
    if (value < 0) continue;
    if (at != end && HexDigit(*at) >= 0) value = value * 16 + HexDigit(*at++);
    take(static_cast<char>(value));
  }
}

std::string_view TextBody(const DataForm& form, const char* end) {
  return {form.body, static_cast<std::size_t>(FindClosing(form.body, end, '"') - form.body)};
}

std::uint32_t ParseDword(const char* at, const char* end) {
  std::uint32_t value = 0;
  for (; at != end && HexDigit(*at) >= 0; ++at)
    value = value * 16 + static_cast<std::uint32_t>(HexDigit(*at));
  return value;
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

char16_t TextReader::escape() {
  if (at_ == end_) return u'\\';
  const char byte = *at_++;
  const std::size_t letter = kControlLetters.find(byte);
  if (byte != '.' && letter != std::string_view::npos) return static_cast<char16_t>(letter);
  if (byte == 'x' && at_ != end_ && HexDigit(*at_) >= 0) {
    int value = 0;
    for (int i = 0; i < 4 && at_ != end_ && HexDigit(*at_) >= 0; ++i)
      value = value * 16 + HexDigit(*at_++);
    return static_cast<char16_t>(value);
  }
  if (byte >= '0' && byte <= '7') {
    int value = byte - '0';
    for (int i = 0; i < 2 && at_ != end_ && *at_ >= '0' && *at_ <= '7'; ++i)
      value = value * 8 + (*at_++ - '0');
    return static_cast<char16_t>(value);
  }
  return static_cast<unsigned char>(byte);
}

std::u16string DecodeText(std::string_view source) {
  std::u16string text(source.size(), u'\0');
  std::size_t length = 0;
  TextReader reader(source);
  while (length < text.size() && reader.next(text[length])) ++length;
  text.resize(length);
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

std::uint32_t HashName(std::u16string_view name) {
  std::uint32_t hash = kHashStart;
  for (const char16_t unit : name) hash = HashUnit(hash, unit);
  return hash;
}

std::uint32_t HashName(std::string_view source) {
  std::uint32_t hash = kHashStart;
  TextReader reader(source);
  for (char16_t unit = 0; reader.next(unit);) hash = HashUnit(hash, unit);
  return hash;
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
    data.bytes = LittleEndian(ParseDword(form->body, end));
  } else {
    ForEachHexByte(form->body, end, [&](char byte) { data.bytes += byte; });
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
  return form ? form->type : REG_NONE;
}

std::size_t DataSize(std::string_view source) {
  const std::optional<DataForm> form = FormOf(source);
  if (!form) return 0;
  const char* const end = source.data() + source.size();
  if (form->kind == DataForm::Kind::Text) return 2 * (CountUnits(TextBody(*form, end)) + 1);
  if (form->kind == DataForm::Kind::Dword) return sizeof(DWORD);
  std::size_t size = 0;
  ForEachHexByte(form->body, end, [&](char) { ++size; });
  return size;
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

/// Passes over one physical line; gives its end without the line end, null where it has none.
const char* LineScanner::endOfLine() {
  ++lines_;
  const void* found = std::memchr(at_, '\n', static_cast<std::size_t>(end_ - at_));
  if (found == nullptr) {
    at_ = end_;
    return nullptr;
  }
  const char* const begin = at_;
  const char* end = static_cast<const char*>(found);
  at_ = end + 1;
  if (end != begin && end[-1] == '\r') --end;
  return end;
}

bool LineScanner::next(HiveLine& line) {
  if (at_ == end_) return false;
  line = {};
  const char* const begin = at_;
  const char* const end = endOfLine();
  if (end == nullptr) {
    line.problem = "the file is cut here";
  } else if (const char* at = SkipBlanks(begin, end); at == end) {
    line.kind = HiveLine::Kind::Blank;
  } else if (*at == '#' || *at == ';') {
    line.kind = *at == '#' ? HiveLine::Kind::Option : HiveLine::Kind::Comment;
    if (HasControl(at, end)) line.problem = "there are binary bytes in it";
  } else if (*at == '[') {
    scanKey(line, at + 1, end);
  } else if (*at == '"' || *at == '@') {
    scanValue(line, at, end);
  } else {
    line.problem = "it is none of a registry file";
  }
  line.text = {begin, static_cast<std::size_t>(at_ - begin)};
  return true;
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
  if (HasControl(line.name.data(), closing)) line.problem = "there are binary bytes in it";
  if (SkipBlanks(at, end) != end) line.problem = "the key's time is no number";
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
  if (line.problem != nullptr) return;
  line.rest = {data, static_cast<std::size_t>(dataEnd - data)};
  if (HasControl(line.name.data(), line.name.data() + line.name.size()))
    line.problem = "there are binary bytes in it";
  if (SkipBlanks(dataEnd, end) != end) line.problem = "there is something behind the data";
}

/// Gives the end of the data; moves `end` to the end of the last line that it reaches over.
const char* LineScanner::scanData(HiveLine& line, const char* at, const char*& end) {
  const std::optional<DataForm> form = FormOf({at, static_cast<std::size_t>(end - at)});
  if (!form) {
    line.problem = "its data has no known form";
    return end;
  }
  at = form->body;
  if (form->kind == DataForm::Kind::Hex) return scanHex(line, at, end);
  if (form->kind == DataForm::Kind::Dword) {
    const char* const digits = at;
    while (at != end && HexDigit(*at) >= 0) ++at;
    if (at == digits || at - digits > 8) line.problem = "its number has no sense";
    return at;
  }
  const char* const closing = FindClosing(at, end, '"');
  if (closing == end) {
    line.problem = WhyUnclosed(at, end);
    return end;
  }
  if (HasControl(at, closing)) line.problem = "there are binary bytes in it";
  return closing + 1;
}

const char* LineScanner::scanHex(HiveLine& line, const char* at, const char*& end) {
  int digits = 0;
  while (true) {
    for (; at != end && *at != '\\'; ++at) {
      if (HexDigit(*at) >= 0) {
        ++digits;
      } else if (*at == ',' || IsBlank(*at)) {
        digits = 0;
      } else {
        digits = 3;
      }
      if (digits > 2) {
        line.problem = "its bytes aren't hexadecimal";
        return end;
      }
    }
    if (at == end) return at;
    if (SkipBlanks(at + 1, end) != end) {
      line.problem = "its bytes aren't hexadecimal";
      return end;
    }
    at = at_;
    digits = 0;
    const char* const nextEnd = at_ == end_ ? nullptr : endOfLine();
    if (nextEnd == nullptr) {
      line.problem = "the file is cut here";
      return end;
    }
    end = nextEnd;
  }
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
