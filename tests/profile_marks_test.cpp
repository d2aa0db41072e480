// Conformance: what the profile calls make of a file's mark, and which changes are to be refused.
// It holds under Wine and on the layer; Windows knows one mark only.
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/extras.h"
#include "platform/winapi.h"
#include "support/printing.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

using namespace std::string_literals;

class ProfileMarksTest : public ScratchWorld {
 protected:
  static const WCHAR* Wide(const Text& text) { return reinterpret_cast<LPCWSTR>(text.c_str()); }

  static Text Read(const Text& path, const Text& section, const Text& key) {
    std::array<WCHAR, 64> buffer{};
    const DWORD count = GetPrivateProfileStringW(
        section.empty() ? nullptr : Wide(section), key.empty() ? nullptr : Wide(key), Wide(u"none"),
        buffer.data(), static_cast<DWORD>(buffer.size()), Wide(path));
    return {buffer.begin(), buffer.begin() + count};
  }
};

/// The text as a file of 16-bit units, the byte of each that comes first being the low one or not.
std::string Units(TextView text, unsigned firstShift) {
  std::string bytes;
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit >> firstShift);
    bytes += static_cast<char>(unit >> (8U - firstShift));
  }
  return bytes;
}

TEST_F(ProfileMarksTest, AreReadAndKept) {
  const Text text = u"[a]\r\nx=\u0416 \u00E9\r\n[\u0416]\r\ny=2\r\n";
  const struct {
    std::string mark;
    std::string body;
  } files[] = {
      {"\xEF\xBB\xBF", "[a]\r\nx=\xD0\x96 \xC3\xA9\r\n[\xD0\x96]\r\ny=2\r\n"},
      {"\xFF\xFE", Units(text, 0)},
      {"\xFE\xFF", Units(text, 8)},
  };
  int number = 0;
  for (const auto& [mark, body] : files) {
    SCOPED_TRACE(number);
    const std::string file = MakeFile("mark" + std::to_string(++number) + ".ini", mark + body);
    const Text path = Utf16(file);
    EXPECT_EQ(Read(path, u"a", u"x"), u"\u0416 \u00E9");
    EXPECT_EQ(Read(path, u"", u""), Text(u"a\0\u0416\0", 4));
    const Text value = u"\u65E5 \U0001F600";
    EXPECT_EQ(HarmToProfile(path, value), ProfileHarm::None);
    EXPECT_EQ(WritePrivateProfileStringW(Wide(u"A"), Wide(u"X"), Wide(value), Wide(path)), TRUE);
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, Wide(path));
    EXPECT_EQ(Read(path, u"a", u"x"), value);
    EXPECT_EQ(Read(path, u"\u0416", u"y"), u"2");
    EXPECT_EQ(Read(path, u"", u""), Text(u"a\0\u0416\0", 4));
    EXPECT_TRUE(FileBytes(file).starts_with(mark + body.substr(0, 6)));
  }
}

TEST_F(ProfileMarksTest, HarmIsForeseen) {
  const struct {
    std::string bytes;
    Text text;
    ProfileHarm harm;
  } cases[] = {
      {"[a]\r\n", u"\u00E9 \u20AC", ProfileHarm::None},
      {"[a]\r\n", u"\u0416", ProfileHarm::OutsidePage},
      {"[a]\r\n", u"\u0141", ProfileHarm::OutsidePage},  // which Windows would make an L
      {"[a]\r\n", u"", ProfileHarm::None},
      {"\xEF\xBB\xBF", u"\u0416\U0001F600", ProfileHarm::None},
      {"\xEF\xBB\xBF", Text(1, char16_t{0xD83D}), ProfileHarm::OutsidePage},
      {"\xFF\xFE", Text(1, char16_t{0xD83D}), ProfileHarm::None},
      {"\xFE\xFF", u"\u0416", ProfileHarm::None},
  };
  int number = 0;
  for (const auto& [bytes, text, harm] : cases) {
    const Text path = Utf16(MakeFile("harm" + std::to_string(++number) + ".ini", bytes));
    EXPECT_EQ(HarmToProfile(path, text), harm) << number << ": " << text;
  }
  EXPECT_EQ(HarmToProfile(Utf16(Folder()) + u"\\none.ini", u"\u0416"), ProfileHarm::OutsidePage);
}

TEST_F(ProfileMarksTest, BytesThatNoTextLeadsToAreSeen) {
  const struct {
    std::string bytes;
    bool isBroken;
  } cases[] = {
      {"\xEF\xBB\xBF[a]\r\nx=\xC3\xA9\r\n", false},
      {"\xEF\xBB\xBF[a]\r\ny=1\r\nx=\xC3\r\n", true},
      {"[a]\r\nx=\x81\xFF\r\n", false},
      {"\xFF\xFE" + Units(Text(u"[a]\r\nx=\xD83D\r\n"), 0), false},
  };
  int number = 0;
  for (const auto& [bytes, isBroken] : cases) {
    const Text path = Utf16(MakeFile("broken" + std::to_string(++number) + ".ini", bytes));
    EXPECT_EQ(HasBrokenText(path, u"A"), isBroken) << number;
  }
}

TEST_F(ProfileMarksTest, WhatCannotBeReadIsNamed) {
  const std::string large = MakeFile("large.ini", "[a]\r\nx=1\r\n");
  EXPECT_EQ(ProfileProblem(Utf16(large)), u"");
  EXPECT_EQ(ProfileProblem(Utf16(Folder()) + u"\\none.ini"), u"");
  EXPECT_EQ(ProfileProblem(Utf16(Folder()) + u"\\none\\none.ini"), u"");
  EXPECT_EQ(ProfileProblem(u"torvane-none.ini"), u"");
  EXPECT_TRUE(ProfileProblem(Utf16(MakeFolder("folder.ini"))).starts_with(u"can't be read: "));
  std::filesystem::resize_file(Host(large), std::uintmax_t{1} << 30U);
  EXPECT_EQ(ProfileProblem(Utf16(large)), u"has 1.0 GB, and no more than 64.0 MB are read");
}

TEST_F(ProfileMarksTest, LettersBeyondAsciiHaveNoCase) {
  const Text path = Utf16(MakeFile("case.ini", "[\xC9]\r\nK\xC9=1\r\n[\xE9]\r\nk\xE9=2\r\n"));
  EXPECT_EQ(Read(path, u"\u00E9", u"K\u00E9"), u"2");
  EXPECT_EQ(Read(path, u"\u00C9", u"k\u00C9"), u"1");
  EXPECT_EQ(Read(path, u"\u00C9", u"k\u00E9"), u"none");
}

}  // namespace
}  // namespace torvane::testing
