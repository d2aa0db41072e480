// The words of Wine's text registry files, version 2: its lines, its escapes, its forms of data.
//
// A file is a first line with the version, then keys: a line "[path] seconds" and below it options
// ("#time=", "#class=", "#link") and values (`"name"=data`, `@=data` for the default value). Paths,
// names and texts are 16-bit, written in ASCII with escapes. Data is `"text"`, `str(type):"text"`,
// `dword:`, `hex:` or `hex(type):`, of which the last two may go on over several lines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/code_page.h"
#include "platform/winapi.h"

namespace torvane::posix {

inline constexpr std::string_view kHiveFirstLine = "WINE REGISTRY Version 2";

/// Reads escaped text (what stands between the quotes or brackets) unit by unit.
class TextReader {
 public:
  explicit TextReader(std::string_view source)
      : at_(source.data()), end_(source.data() + source.size()) {}

  /// Gives false at the end.
  bool next(char16_t& unit) {
    if (at_ == end_) return false;
    const char byte = *at_++;
    unit = byte == '\\' ? escape() : static_cast<unsigned char>(byte);
    return true;
  }
  /// Where the next unit's source begins.
  const char* position() const { return at_; }

 private:
  char16_t escape();

  const char* at_;
  const char* end_;
};

std::u16string DecodeText(std::string_view source);
/// Number of 16-bit units of escaped text.
std::size_t CountUnits(std::string_view source);

/// Escaped text of a key path, to stand in brackets.
std::string EscapePath(std::u16string_view path);

/// For hashing and comparing names without case.
inline constexpr std::uint32_t kHashStart = 2166136261U;
inline std::uint32_t HashUnit(std::uint32_t hash, char16_t unit) {
  return (hash ^ FoldCase(unit)) * 16777619U;
}
std::uint32_t HashName(std::u16string_view name);
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

/// The data of a sound value line (what stands behind its "=").
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
  std::string_view text;          ///< all of it, line end included
  std::string_view name;          ///< Key: the escaped path; Value: the escaped name
  std::string_view rest;          ///< Key: the decimal seconds, may be empty; Value: the data
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
  void scanKey(HiveLine& line, const char* at, const char* end);
  void scanValue(HiveLine& line, const char* at, const char* end);
  const char* scanData(HiveLine& line, const char* at, const char*& end);
  const char* scanHex(HiveLine& line, const char* at, const char*& end);

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
