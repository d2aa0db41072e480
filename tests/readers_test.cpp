#include <gtest/gtest.h>

#include "readers/basListFill.h"
#include "readers/icon_paths.h"
#include "readers/ini_folders.h"
#include "support/list_window.h"
#include "support/printing.h"
#include "support/scratch_world.h"

namespace torvane {
namespace {

using testing::Shown;
using testing::TextValue;

// A list window without a view, and a key to read from.
class ReadersTest : public testing::ListWorld {
 protected:
  std::string Lower(const std::string& path) const { return ToAnsi(LowerCase(FromAnsi(path))); }
};

TEST(MruEntryTest, TravelsThroughRowNodeAndItem) {
  const MruEntry entry =
      EntryFromRow(u"Winzip (File),Nico\\filemenu,0,*,filemenu,1,*,*,winzip.exe,*");
  EXPECT_EQ(entry.ExeName, u"winzip.exe");
  const Text tag = NodeTag(entry);
  EXPECT_EQ(tag, u"Nico\\filemenu;0;*;filemenu;1;*;*;winzip.exe");
  const MruEntry fromNode = EntryFromNode(u"Winzip (File)", tag);
  EXPECT_EQ(fromNode.EntryName, u"Winzip (File)");
  EXPECT_EQ(fromNode.CountKind, u"*");
  EXPECT_EQ(fromNode.ExeName, u"");
  EXPECT_EQ(ItemTag(true, entry), u"KILL;Nico\\filemenu;0;*;filemenu;1;*;*");
  EXPECT_EQ(EntryFromItemTag(ItemTag(false, entry)).FirstIndex, u"1");
}

TEST_F(ReadersTest, PlainListShowsFilesInLowerCaseAndMarksTheMissing) {
  const std::string file = MakeFile("Data\\Read Me.TXT");
  Key({{"File1", file},
       {"File2", "C:\\No Such\\X.TXT"},
       {"File3", ""},
       {"mrucount", "7"},
       {"File4", "http://x.y"},
       {"File5", "   "}});
  Fill(FillRegistryList, "0");
  const std::string folder = Lower(Folder()) + "\\data";
  EXPECT_EQ(SortedRows(), testing::Sorted({{"KEEP", "read me.txt", folder},
                                           {"KILL", "x.txt", "c:\\no such"},
                                           {"KILL", "7", ""},
                                           {"KILL", "http://x.y", ""},
                                           {"KILL", "", ""}}));
  EXPECT_EQ(Counters().TotalCount, 5);
  EXPECT_EQ(Counters().MissingCount, 4);
}

TEST_F(ReadersTest, EveryRegistryFormShowsItsOwnReading) {
  const std::string file = MakeFile("A.ico");
  const std::string folder = Lower(Folder());
  struct Case {
    void (*reader)(const MruEntry&, List&);
    std::vector<TextValue> values;
    std::vector<Shown> rows;
    int total;
    int missing;
  };
  const Case cases[] = {
      {FillFavoritesList,
       {{"1", "My Icons|" + file + "|x"}, {"2", "Only a Name"}, {"3", ""}},
       {{"KEEP", "a.ico", "My Icons", folder}, {"KILL", "", "Only a Name", ""}},
       2,
       1},
      {FillCommaList,
       {{"1", file + ",7"}, {"2", "\"" + file + ",7\""}, {"3", "bare.ico"}},
       {{"KEEP", "a.ico", folder + "\\"},
        {"KILL", Lower("\"" + file + ",7\""), "\\"},
        {"KILL", "bare.ico", "\\"}},
       3,
       2},
      {FillValueNameList,
       {{file, ""}, {"", "default"}, {"MRUCount", "x"}},
       {{"KEEP", "a.ico", folder}, {"KILL", "mrucount", ""}},
       2,
       1},
      {FillFolderList,
       {{"1", Folder() + "\\"},
        {"2", "Q:"},
        {"3", "12"},
        {"4", ""},
        {"5", "C:\\None\\"},
        {"MRUCount", "C:\\"}},
       {{"KEEP", folder}, {"KEEP", "q:\\"}, {"KILL", ""}, {"KILL", "c:\\none"}},
       4,
       2},
      {FillUrlList,
       {{"1", "HTTP://A.B"}, {"2", ""}, {"3", "ftp://X"}, {"4", "C:\\Gone.htm"}, {"MRUCount", "Q"}},
       {{"KEEP", "http://a.b"}, {"KEEP", "ftp://x"}, {"KEEP", "c:\\gone.htm"}, {"KEEP", "q"}},
       5,
       0},
      {FillFindReplaceList,
       {{"0", "Find Me  "}, {"1", ""}, {"MRUCount", "B"}},
       {{"KEEP", "Find Me  "}, {"KEEP", "B"}},
       2,
       0},
      {FillRegEditFavorites,
       {{"My Key", "HKEY_X\\Y"}, {"Empty", ""}},
       {{"KEEP", "My Key", "HKEY_X\\Y"}},
       2,
       0},
      {FillCommandList,
       {{"a", "NotePad\\1"}, {"b", "C:\\\\1"}, {"c", "x"}, {"d", ""}, {"MRUCount", "abcd"}},
       {{"KEEP", "NotePad"}, {"KEEP", "C:\\"}, {"KEEP", ""}, {"KEEP", ""}},
       4,
       0},
      {FillHostList, {{"Host1", "WWW.X"}, {"Host2", ""}}, {{"KEEP", "www.x"}, {"KEEP", ""}}, 2, 0},
  };
  int number = 0;
  for (const Case& c : cases) {
    SCOPED_TRACE("case " + std::to_string(number++));
    Key(c.values);
    Fill(c.reader, "1");
    EXPECT_EQ(SortedRows(), testing::Sorted(c.rows));
    EXPECT_EQ(Counters().TotalCount, c.total);
    EXPECT_EQ(Counters().MissingCount, c.missing);
  }
}

TEST_F(ReadersTest, AnAbsentStoreGivesTheColumnsAlone) {
  UseKey(kListKey);
  Fill(FillFavoritesList, "1");
  EXPECT_EQ(list_.ColumnHeaders().Count(), 3);
  EXPECT_EQ(list_.ColumnHeaders()(2), u"Favorite Name");
  EXPECT_EQ(list_.ListItems().Count(), 0);
  EXPECT_EQ(Counters().TotalCount, 0);
}

TEST_F(ReadersTest, IconsGoByKindOfEntry) {
  list_.ListItems().Clear();
  AddListEntry(list_, 7, u"", u"a", u"b", u"t", u"c");
  EXPECT_EQ(list_.ListItems().Count(), 0);
  AddListEntry(list_, 1, u"", u"file", u"path", u"t", u"name");
  EXPECT_EQ(list_.ListItems()(1).SubItems(1), u"name");
  EXPECT_EQ(list_.ListItems()(1).SubItems(2), u"path");
}

TEST_F(ReadersTest, SplitsRootsAndBareNames) {
  struct Case {
    Text text, file, folder;
  };
  const Case cases[] = {{u"Z9:\\None\\A.TXT", u"a.txt", u"z9:\\none"},
                        {u"c:\\torvane-none.txt", u"torvane-none.txt", u"c:\\"},
                        {u"torvane-none.txt", u"torvane-none.txt", u""},
                        {u"\"c:\\a b\\c.txt\"", u"\"c:\\a b\\c.txt\"", u""},
                        {u"c:\\\"x\"y\\a.txt", u"", u"c:\\\"x\"y\\a.txt"}};
  for (const Case& c : cases) {
    const EntryPath path = SplitEntryPath(c.text);
    EXPECT_EQ(path.fileName, c.file) << c.text;
    EXPECT_EQ(path.folderPath, c.folder) << c.text;
  }
}

class IniReadersTest : public ReadersTest {
 protected:
  MruEntry IniEntry(const Text& name, const Text& type, const Text& prefix) {
    return {.EntryName = name,
            .Location = u"torvane-test.ini",
            .ListType = type,
            .Section = u"My List",
            .ValuePrefix = prefix,
            .FirstIndex = u"0",
            .CountValue = u"*",
            .CountKind = u"*",
            .ExeName = {}};
  }
};

TEST_F(IniReadersTest, WindowsFolderListsReadAllKeysOrNumberedOnes) {
  const std::string file = MakeFile("A.txt");
  MakeWindowsFile("torvane-test.ini", "[My List]\r\nRecentFile0=" + file +
                                          "\r\nSize=x\r\nRecentFile1=c:\\none\\b.txt\r\nEmpty=\r\n"
                                          "RecentFile9=c:\\none\\c.txt\r\n");
  FillEntry(FillIniList, IniEntry(u"X", u"20", u"RecentFile"));
  EXPECT_EQ(list_.ListItems().Count(), 4);
  EXPECT_EQ(Counters().MissingCount, 3);
  FillEntry(FillWinIniList, IniEntry(u"X", u"23", u"RecentFile"));
  EXPECT_EQ(Rows(), (std::vector<Shown>{{"KEEP", "a.txt", Lower(Folder())},
                                        {"KILL", "b.txt", "c:\\none"}}));
}

TEST_F(IniReadersTest, AsksForTheFolderOnceAndRemembersIt) {
  UseKey("Software\\Halvex\\Torvane");
  const std::string ini =
      MakeFile("Program\\torvane-test.ini", "[My List]\r\nDir1=" + Folder() + "\\\r\nDir2=\r\n");
  const MruEntry entry = IniEntry(u"Some Viewer", u"21", u"Dir");

  // The user gives up: the list has its columns, the store its key.
  FillEntry(FillIniFolderList, entry);
  EXPECT_EQ(toolkit_.folderTitles,
            std::vector<Text>{u"Choose the folder where Some Viewer is installed"});
  EXPECT_TRUE(toolkit_.messages.empty());
  EXPECT_EQ(list_.ColumnHeaders().Count(), 1);

  // A wrong folder, once more, then the right one.
  toolkit_.folders = {FromAnsi(Folder()), FromAnsi(Folder() + "\\Program")};
  FillEntry(FillIniFolderList, entry);
  ASSERT_EQ(toolkit_.messages.size(), 1U);
  EXPECT_EQ(toolkit_.messages[0].style, 49U);
  EXPECT_EQ(toolkit_.messages[0].text,
            u"I could not find the ini file for Some Viewer.\r\n\r\nPossible causes are:\r\n"
            u"1. Some Viewer is not installed, click cancel.\r\n"
            u"2. The wrong directory was selected, click ok to try again.");
  EXPECT_EQ(Rows(), (std::vector<Shown>{{"KEEP", Lower(Folder())}, {"KILL", ""}}));
  EXPECT_EQ(Counters().TotalCount, 2);
  EXPECT_EQ(Texts("Software\\Halvex\\Torvane\\Paths")["Some Viewer"], Folder() + "\\Program\\");

  FillEntry(FillInstalledIniList, entry);
  EXPECT_EQ(toolkit_.folderTitles.size(), 3U);
  EXPECT_EQ(list_.ListItems().Count(), 1);
}

}  // namespace
}  // namespace torvane
