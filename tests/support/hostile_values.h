// Names and data that have hurt programs which read the registry. Names are in UTF-8.
#pragma once

#include <string>
#include <vector>

#include "platform/winapi.h"
#include "support/wide.h"

namespace torvane::testing {

using namespace std::string_literals;

/// Data as it is set and as reading gives it back, text in 16-bit units.
struct HostileData {
  const char* what;
  DWORD type;
  std::string bytes;
};

inline const std::vector<HostileData>& HostileDataTable() {
  static const std::vector<HostileData> table = {
      {"text", REG_SZ, StoredData(REG_SZ, "C:\\a b\\\"c\".txt\0"s)},
      {"text without its NUL", REG_SZ, StoredData(REG_SZ, "abc"s)},
      {"text of one NUL", REG_SZ, StoredData(REG_SZ, "\0"s)},
      {"text of no bytes", REG_SZ, StoredData(REG_SZ, ""s)},
      {"text with two NULs behind", REG_SZ, StoredData(REG_SZ, "abc\0\0"s)},
      {"text with NULs in it", REG_SZ, StoredData(REG_SZ, "a\0b\0\0c\0"s)},
      {"text with digits behind escapes", REG_SZ,
       StoredData(REG_SZ, "\0011\0007\0379\u00E9a\u20ACf\0"s)},
      {"text with accents", REG_SZ,
       StoredData(REG_SZ, "caf\u00E9 \u20AC \u0416\u65E5\U0001F600\0"s)},
      {"text with line ends", REG_SZ,
       StoredData(REG_SZ, "[a]\r\n\"b\"=\"c\\\t\v\f\a\b\x1B\x7F\0"s)},
      {"text that ends in a backslash", REG_SZ, StoredData(REG_SZ, "C:\\\0"s)},
      {"long text", REG_SZ, StoredData(REG_SZ, std::string(40000, 'x') + '\0')},
      {"variables", REG_EXPAND_SZ, StoredData(REG_EXPAND_SZ, "%TEMP%\\x\0"s)},
      {"variables without their NUL", REG_EXPAND_SZ, StoredData(REG_EXPAND_SZ, "%TEMP%"s)},
      {"texts", REG_MULTI_SZ, StoredData(REG_MULTI_SZ, "a\0bc\0\0"s)},
      {"texts with one NUL behind", REG_MULTI_SZ, StoredData(REG_MULTI_SZ, "a\0bc\0"s)},
      {"texts without a NUL behind", REG_MULTI_SZ, StoredData(REG_MULTI_SZ, "a\0bc"s)},
      {"texts with an empty one", REG_MULTI_SZ, StoredData(REG_MULTI_SZ, "a\0\0b\0\0"s)},
      {"no texts", REG_MULTI_SZ, StoredData(REG_MULTI_SZ, "\0"s)},
      {"text with half a unit behind", REG_SZ, "a\0b"s},
      {"text of half a unit", REG_EXPAND_SZ, "a"s},
      {"text with lone surrogates", REG_SZ, "\x3D\xD8z\0\0\xDC\0\0"s},
      {"bytes", REG_BINARY, "\0\x01\xFF\n\"\\"s},
      {"an odd number of bytes", REG_BINARY, "abc"s},
      {"many bytes", REG_BINARY, std::string(1000, '\xA5')},
      {"no bytes", REG_BINARY, ""s},
      {"number", REG_DWORD, "\x78\x56\x34\x12"s},
      {"number of three bytes", REG_DWORD, "abc"s},
      {"number of no bytes", REG_DWORD, ""s},
      {"number of five bytes", REG_DWORD, "abcde"s},
      {"number, high byte first", REG_DWORD_BIG_ENDIAN, "\x12\x34\x56\x78"s},
      {"nothing", REG_NONE, ""s},
      {"nothing with bytes", REG_NONE, "a\0"s},
      {"link", 6, "a\0b\0"s},
      {"large number", 11, "\x01\x02\x03\x04\x05\x06\x07\x08"s},
      {"unknown type", 0xFFFF1234, "\x01\0\x03"s},
  };
  return table;
}

inline const std::vector<std::string>& HostileNames() {
  static const std::string lengths[] = {std::string(255, 'n'), std::string(16383, 'N')};
  static const std::vector<std::string> names = {
      "File1",  "",       "@",          "\"",       "a\"=\"b",
      "\\",     "a\\b/c", "[x]",        "#time=1",  ";c",
      " both ", "a=b",    "a\tb\nc\rd", "\0011",    "caf\u00E9\u20AC\u0416",
      "%TEMP%", "0",      "*?",         lengths[0], lengths[1]};
  return names;
}

}  // namespace torvane::testing
