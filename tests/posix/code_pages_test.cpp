#include <fstream>
#include <string>

#include "platform/extras.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/registry/ansi_page.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

using posix::FromCodePage;
using posix::FromUtf8;
using posix::ToCodePage;
using posix::ToUtf8;

class CodePagesTest : public ScratchWorld {
 protected:
  /// Names a code page in the prefix's registry.
  static void Use(const std::string& page) {
    std::ofstream(posix::PrefixRoot() / "system.reg")
        << "WINE REGISTRY Version 2\n\n[System\\\\CurrentControlSet\\\\Control\\\\Nls\\\\CodePage] "
           "1\n"
        << "\"ACP\"=\"" << page << "\"\n";
    posix::ForgetWorld();
  }
};

TEST_F(CodePagesTest, TheyAreWhatThePrefixSays) {
  struct Row {
    const char* page;
    std::string bytes;
    std::u16string text;
  };
  const Row rows[] = {
      {"1251", "\xC6\xE0\x98", u"\u0416\u0430\u0098"},
      {"1253", "\xE1\xAA", u"\u03B1\uF8F9"},
      {"874", "\xA1\xDB", u"\u0E01\uF8C1"},
      {"932", "\x82\xA0=\x83\x5C\xB1", u"\u3042=\u30BD\uFF71"},
      {"936", "\xC4\xE3\x80\xAA\xA1", u"\u4F60\u20AC\uE000"},
      {"949", "\xB0\xA1z", u"\uAC00z"},
      {"950", "\xA4\xA4\xFA\x40", u"\u4E2D\uE000"},
      {"65001", "\xC3\xA4\xF0\x9F\x98\x80", u"\u00E4\U0001F600"},
      {"nonsense", "\xE4", u"\u00E4"},
      {"9999999", "\xE4", u"\u00E4"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.page);
    Use(row.page);
    EXPECT_EQ(FromCodePage(row.bytes), row.text);
    EXPECT_EQ(ToCodePage(row.text), row.bytes);
  }
}

TEST_F(CodePagesTest, BrokenPairsGiveTheDefaultCharacter) {
  Use("932");
  EXPECT_EQ(FromCodePage("a\x82"), u"a\u30FB");
  EXPECT_EQ(FromCodePage(std::string("\x82\0b", 3)), std::u16string(u"\u30FB\0b", 3));
  EXPECT_EQ(FromCodePage("\x82\x20z"), u"\u30FBz");
  EXPECT_EQ(ToCodePage(u"\u00E4\u3042"), "?\x82\xA0");
}

TEST_F(CodePagesTest, ASectionOfBrokenPairsIsSeen) {
  Use("932");
  const Text path = Utf16(
      MakeFile("pairs.ini", "; \x82\r\n[whole]\r\nx=\x82\xA0\r\n[half]\r\nx=1\r\ny=\x82\r\n"));
  EXPECT_FALSE(HasBrokenText(path, u"whole"));
  EXPECT_TRUE(HasBrokenText(path, u"half"));
}

TEST(Utf8, IllFormedPartsBecomeReplacementCharacters) {
  struct Row {
    std::string bytes;
    std::u16string text;
  };
  const Row rows[] = {
      {"a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", u"a\u00E4\u20AC\U0001F600"},
      {"\x80"
       "a",
       u"\uFFFDa"},
      {"\xC0\xAF", u"\uFFFD\uFFFD"},
      {"\xE2\x82", u"\uFFFD"},
      {"\xE2\x82"
       "a",
       u"\uFFFDa"},
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xF0\x9F\x98", u"\uFFFD"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(FromUtf8(row.bytes), row.text) << ::testing::PrintToString(row.bytes);
  EXPECT_EQ(ToUtf8(rows[0].text), rows[0].bytes);
  EXPECT_EQ(ToUtf8(std::u16string{u'a', char16_t{0xD800}, u'b', char16_t{0xDC00}}),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
}

}  // namespace
}  // namespace torvane::testing
