#include <gtest/gtest.h>

#include "menu/open_with.h"
#include "support/list_window.h"
#include "support/printing.h"

namespace torvane {
namespace {

// A program that isn't there can't be started, and the message tells the command line.
class OpenWithTest : public testing::ListWorld {
 protected:
  void Add(const Text& file, const Text& folder, const Text& tag) {
    AddListEntry(list_, 0, u"", file, folder, tag, u"");
    list_.ListItems()(list_.ListItems().Count()).Selected(true);
  }
  /// The command line that a program is started with; empty where nothing is started.
  Text CommandLine(const Text& program) {
    toolkit_.messages.clear();
    OpenWithProgram(program, list_);
    if (toolkit_.messages.empty()) return {};
    const Text& text = toolkit_.messages[0].text;
    return text.substr(text.find(u'\n') + 1);
  }
};

TEST_F(OpenWithTest, EachProgramGetsItsEntryInItsWay) {
  Add(u"-b & $(c); d.txt", u"c:\\a b", u"KEEP;x");
  struct Case {
    Text program;
    Text commandLine;
  };
  const Text bare = u"c:\\a b\\-b & $(c); d.txt";
  const Text quoted = u"\"" + bare + u"\"";
  const Case cases[] = {
      {u"C:\\none\\winzip32.exe", u"C:\\none\\winzip32.exe " + quoted},
      {u"C:\\none\\TOPSTYLE.exe", u"C:\\none\\TOPSTYLE.exe " + quoted},
      {u"C:\\no ne\\DevPad.exe", u"C:\\no ne\\DevPad.exe " + quoted},
      {u"C:\\none\\hhw.exe", u"C:\\none\\hhw.exe " + bare},
      {u"C:\\none\\iexplore.exe", u"C:\\none\\iexplore.exe -b & $(c); d.txt"},
      {u"C:\\none\\ConTEXT.exe", u"C:\\none\\ConTEXT.exe " + quoted + u" "},
      {u"C:\\none\\WINZIP32.EXE", u""},
      {u"C:\\none\\kodakimg.exe", u""},
      {u"\"C:\\none\\hhw.exe\"", u""},
      {u"", u""},
  };
  for (const Case& c : cases) EXPECT_EQ(CommandLine(c.program), c.commandLine) << c.program;
}

TEST_F(OpenWithTest, MissingEntriesAndQuotesStartNothing) {
  const Text editor = u"C:\\none\\DevPad.exe";
  Add(u"gone.txt", u"c:\\a", u"KILL;x");
  EXPECT_EQ(CommandLine(editor), u"");
  EXPECT_EQ(CommandLine(u"C:\\none\\ConTEXT.exe"), u"C:\\none\\ConTEXT.exe ");
}

TEST_F(OpenWithTest, ADoubleQuoteIsRefusedWhereItWouldEndTheArgumentsQuotes) {
  const Text refusal = u"c:\\a\\a\" -x \"b.txt";
  Add(u"a\" -x \"b.txt", u"c:\\a", u"KEEP;x");
  EXPECT_EQ(CommandLine(u"C:\\none\\hhw.exe"), u"C:\\none\\hhw.exe c:\\a\\a\" -x \"b.txt");
  EXPECT_EQ(CommandLine(u"C:\\none\\iexplore.exe"), u"C:\\none\\iexplore.exe a\" -x \"b.txt");
  for (const char16_t* program : {u"C:\\none\\DevPad.exe", u"C:\\none\\ConTEXT.exe"}) {
    EXPECT_EQ(CommandLine(program), refusal);
    EXPECT_EQ(toolkit_.messages.size(), 1U);
  }
  Add(u"", u"c:\\", u"KEEP;x");
  EXPECT_EQ(CommandLine(u"C:\\none\\ConTEXT.exe"), refusal);
  ASSERT_EQ(toolkit_.messages.size(), 2U);
  EXPECT_TRUE(toolkit_.messages[1].text.ends_with(u"ConTEXT.exe \"c:\\\\\" ")) << "a root";
}

TEST_F(OpenWithTest, OneProgramTakesSeveralEntriesInListOrder) {
  Add(u"1.txt", u"c:\\", u"KEEP;x");
  Add(u"2.txt", u"c:\\a", u"KILL;x");
  Add(u"3.txt", u"c:\\a", u"KEEP;x");
  Add(u"4.txt", u"c:\\a", u"KEEP;x");
  list_.ListItems()(4).Selected(false);
  EXPECT_EQ(CommandLine(u"C:\\none\\ConTEXT.exe"),
            u"C:\\none\\ConTEXT.exe \"c:\\1.txt\" \"c:\\a\\3.txt\" ");
}

}  // namespace
}  // namespace torvane
