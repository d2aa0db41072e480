// The words of Wine's text registry files, version 2: its lines, its escapes, its forms of data.
//
// A file is a first line with the version, then keys: a line "[path] seconds" and below it options
// ("#time=", "#class=", "#link") and values (`"name"=data`, `@=data` for the default value). Paths,
// names and texts are 16-bit, written in ASCII with escapes; other bytes are read as UTF-8. Data is
// `"text"`, `str(type):"text"`, `dword:`, `hex:` or `hex(type):`, of which the last two may go on
// over several lines. What stands behind a key's time, a text or a number means nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/text/letter_case.h"
#include "platform/posix/text/name_hash.h"
#include "platform/winapi.h"

namespace torvane::posix {

/// Reads escaped text (what stands between the quotes or brackets) unit by unit.
class TextReader {
 public:
  explicit TextReader(std::string_view source)
      : at_(source.data()), end_(source.data() + source.size()) {}

  /// Gives false at the end.
  bool next(char16_t& unit) {
    if (at_ == end_ || *at_ == '\\' || static_cast<unsigned char>(*at_) >= 0x80 || low_ != 0)
      return nextOdd(unit);
    unit = static_cast<unsigned char>(*at_++);
    return true;
  }
  /// Reads the units that stand for themselves up to the next that doesn't; gives where it stopped
  /// writing them.
  char16_t* nextPlain(char16_t* units) {
    if (low_ != 0) return units;
    const char* at = at_;
    for (; at != end_; ++at) {
      const auto byte = static_cast<unsigned char>(*at);
      if (byte >= 0x80) break;
      if (byte == '\\') {
        // Of the escapes, paths are full of this one.
        if (end_ - at < 2 || at[1] != '\\') break;
        ++at;
      }
      *units++ = byte;
    }
    at_ = at;
    return units;
  }
  /// Where the next unit's source begins.
  const char* position() const { return at_; }

 private:
  bool nextOdd(char16_t& unit);
  std::optional<char16_t> escape();
  std::optional<char16_t> utf8();

  const char* at_;
  const char* end_;
  char16_t low_ = 0;  ///< the second unit of a character whose first has been given
};

std::u16string DecodeText(std::string_view source);
/// Number of 16-bit units of escaped text.
std::size_t CountUnits(std::string_view source);

/// Escaped text of a key path, to stand in brackets.
std::string EscapePath(std::u16string_view path);

/// For hashing and comparing names without case; see NameHash.
std::uint32_t HashName(std::string_view source);
bool SameName(std::string_view source, std::u16string_view name);
bool SameName(std::string_view source, std::string_view other);

/// A value's type and bytes as the registry holds them, text in UTF-16, low byte first.
struct ValueData {
  DWORD type = REG_NONE;
  std::string bytes;
};

/// UTF-16 text of its bytes, of which a spare last one is dropped; and the bytes of such text.
std::u16string UnitsOf(std::string_view bytes);
std::string BytesOf(std::u16string_view text);

/// The data of a sound value line (what stands behind its "="). A list of bytes with a stray comma
/// is, as Wine has it, no data of no type.
ValueData DecodeData(std::string_view source);
/// The text, with its closing NUL, of data that is written as text; nothing for other forms.
std::optional<std::u16string> WrittenText(std::string_view source);
/// Type and size in bytes, without making the bytes.
DWORD DataType(std::string_view source);
std::size_t DataSize(std::string_view source);

/// The line of a value, with its line end.
struct ValueLine {
  std::string text;
  std::size_t nameSize = 0;  ///< of the escaped name, which stands behind the first character
  std::size_t dataAt = 0;    ///< what follows up to the line end is for DecodeData

  std::string_view name() const { return std::string_view(text).substr(1, nameSize); }
  std::string_view data() const {
    return std::string_view(text).substr(dataAt, text.size() - dataAt - 1);
  }
};
/// The line that Wine writes for a value. An empty name is the default value.
ValueLine WriteValueLine(std::u16string_view name, const ValueData& data);

/// A line of a hive; a value whose data goes on over several lines is one.
struct HiveLine {
  enum class Kind { Blank, Comment, Option, Key, Value };
  Kind kind = Kind::Blank;
  std::string_view text;  ///< all of it, line end included
  std::string_view name;  ///< Key: the escaped path; Value: the escaped name
  /// Key: the decimal seconds, may be empty; Value: the data; Option: from its '#' on.
  std::string_view rest;
  const char* problem = nullptr;  ///< what is wrong with it; null for a sound line
};

/// Splits a hive, or a piece of one, into its lines and checks each. Allocates nothing.
class LineScanner {
 public:
  explicit LineScanner(std::string_view source)
      : at_(source.data()), end_(source.data() + source.size()) {}

  /// Gives false at the end.
  bool next(HiveLine& line);
  /// Physical lines read so far.
  std::size_t lineCount() const { return lines_; }

 private:
  const char* endOfLine();
  void scanLine(HiveLine& line, const char* begin, const char* end);
  void scanKey(HiveLine& line, const char* at, const char* end);
  void scanValue(HiveLine& line, const char* at, const char* end);
  const char* scanData(HiveLine& line, const char* at, const char* end);
  const char* scanHex(HiveLine& line, const char* at, const char* end);

  const char* at_;
  const char* end_;
  std::size_t lines_ = 0;
};

inline constexpr std::string_view kClassOption = "#class=\"";
/// The escaped class name in an option line that begins with kClassOption.
std::string_view ClassText(std::string_view line);

/// A key's time in 100 ns since 1601, from its "#time=" line, and the digits for one; the seconds
/// since 1970 that stand on its key line.
std::uint64_t ParseTime(std::string_view hexadecimal);
std::string TimeDigits(std::uint64_t time);
std::uint64_t TimeFromSeconds(std::string_view decimal);
std::uint64_t SecondsFromTime(std::uint64_t time);
/// The present.
std::uint64_t HiveTimeNow();

}  // namespace torvane::posix
