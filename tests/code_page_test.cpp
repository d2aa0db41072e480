// Conformance: holds on Windows and on the layer, in a world whose code page is 1252.
#include <array>
#include <string>
#include <vector>

#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

class CodePageTest : public ScratchWorld {};

TEST_F(CodePageTest, ConvertsBothWaysAsWindowsDoes) {
  struct Row {
    std::string bytes;
    std::u16string text;
  };
  const std::vector<Row> rows = {
      {"plain", u"plain"},
      {"\xE4\xF6\xFC\xDF", u"\u00E4\u00F6\u00FC\u00DF"},
      {"\x80\x99", u"\u20AC\u2122"},
      {"\x81\x8D\x8F\x90\x9D", u"\u0081\u008D\u008F\u0090\u009D"},
      {std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::PrintToString(row.bytes));
    const auto byteCount = static_cast<int>(row.bytes.size());
    const auto units = static_cast<int>(row.text.size());
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, row.bytes.data(), byteCount, nullptr, 0), units);
    std::u16string text(row.text.size(), u'#');
    auto* wide = reinterpret_cast<LPWSTR>(text.data());
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, row.bytes.data(), byteCount, wide, units), units);
    EXPECT_EQ(text, row.text);
    std::string bytes(row.bytes.size(), '#');
    EXPECT_EQ(
        WideCharToMultiByte(CP_ACP, 0, wide, units, bytes.data(), byteCount, nullptr, nullptr),
        byteCount);
    EXPECT_EQ(bytes, row.bytes);
  }
}

TEST_F(CodePageTest, WhatDoesNotFitIsQuestionMarksOrAFailure) {
  const std::u16string text = u"\u0416\u3042x\U0001F600";
  std::array<char, 8> bytes{};
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<LPCWSTR>(text.data()), 5, bytes.data(),
                                8, nullptr, nullptr),
            5);
  EXPECT_STREQ(bytes.data(), "??x??");
  std::array<WCHAR, 2> wide{};
  SetLastError(0);
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", 3, wide.data(), 2), 0);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", -1, nullptr, 0), 4);
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", 0, nullptr, 0), 0);
}

TEST_F(CodePageTest, LowerCaseGoesByUnicode) {
  std::u16string text = u"AZ\u00C4\u00DF\u0416\u03A9\u0100\u017D1_";
  EXPECT_EQ(CharLowerBuffW(reinterpret_cast<LPWSTR>(text.data()), 10), 10U);
  EXPECT_EQ(text, u"az\u00E4\u00DF\u0436\u03C9\u0101\u017E1_");
}

TEST_F(CodePageTest, ExpandsKnownVariables) {
  struct Row {
    const char* text;
    const char* expanded;
  };
  constexpr Row kRows[] = {
      {"%SystemRoot%\\x.ini", "C:\\windows\\x.ini"},
      {"%SYSTEMROOT%%windir%", "C:\\windowsC:\\windows"},
      {"%torvane-none%\\a", "%torvane-none%\\a"},
      {"50%", "50%"},
      {"%SystemDrive%", "C:"},
      {"", ""},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    Text buffer(64, u'\0');
    const auto needed = static_cast<DWORD>(std::string(row.expanded).size() + 1);
    EXPECT_EQ(ExpandEnvironmentStringsW(W(row.text), WideBuffer(buffer), 64), needed);
    EXPECT_EQ(StripAtNull(buffer), Utf16(row.expanded));
    EXPECT_EQ(ExpandEnvironmentStringsW(W(row.text), WideBuffer(buffer), 1), needed);
  }
}

}  // namespace
}  // namespace torvane::testing
