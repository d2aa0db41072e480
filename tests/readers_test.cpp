#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "readers/basListFill.h"
#include "readers/icon_paths.h"
#include "readers/ini_folders.h"
#include "readers/list_description.h"
#include "storage/raised_error.h"
#include "support/list_window.h"
#include "support/printing.h"
#include "support/scratch_world.h"

namespace torvane {
namespace {

using testing::Shown;
using testing::TextValue;
using testing::Utf16;
using testing::Utf8;

// A list window without a view, and a key to read from.
class ReadersTest : public testing::ListWorld {
 protected:
  std::string Lower(const std::string& path) const { return Utf8(LowerCase(Utf16(path))); }
  std::string Note(int row) const { return Utf8(Text(list_.ListItems()(row).ImageNote())); }
};

TEST_F(ReadersTest, EveryRegistryFormShowsItsOwnReading) {
  const std::string file = MakeFile("A.ico");
  const std::string folder = Lower(Folder());
  struct Case {
    void (*reader)(const MruEntry&, List&);
    std::vector<TextValue> values;
    std::vector<Shown> rows;
    int hidden = 0;  ///< entries that are counted and not shown
  };
  const Case cases[] = {
      {FillRegistryList,
       {{"File1", MakeFile("Data\\Read Me.TXT")},
        {"File2", "C:\\No Such\\X.TXT"},
        {"File3", ""},
        {"mrucount", "7"},
        {"File4", "http://x.y"},
        {"File5", "   "}},
       {{"KEEP", "read me.txt", folder + "\\data"},
        {"KILL", "x.txt", "c:\\no such"},
        {"KILL", "7", ""},
        {"KILL", "http://x.y", ""},
        {"KILL", "", ""}}},
      {FillFavoritesList,
       {{"1", "My Icons|" + file + "|x"}, {"2", "Only a Name"}, {"3", ""}},
       {{"KEEP", "a.ico", "My Icons", folder}, {"KILL", "", "Only a Name", ""}}},
      {FillCommaList,
       {{"1", file + ",7"}, {"2", "\"" + file + ",7\""}, {"3", "bare.ico"}},
       {{"KEEP", "a.ico", folder + "\\"},
        {"KILL", Lower("\"" + file + ",7\""), "\\"},
        {"KILL", "bare.ico", "\\"}}},
      {FillValueNameList,
       {{file, ""}, {"", "default"}, {"MRUCount", "x"}},
       {{"KEEP", "a.ico", folder}, {"KILL", "mrucount", ""}}},
      {FillFolderList,
       {{"1", Folder() + "\\"},
        {"2", "Q:"},
        {"3", "12"},
        {"4", ""},
        {"5", "C:\\None\\"},
        {"MRUCount", "C:\\"}},
       {{"KEEP", folder}, {"KEEP", "q:\\"}, {"KILL", ""}, {"KILL", "c:\\none"}}},
      {FillUrlList,
       {{"1", "HTTP://A.B"}, {"2", ""}, {"3", "ftp://X"}, {"4", "C:\\Gone.htm"}, {"MRUCount", "Q"}},
       {{"KEEP", "http://a.b"}, {"KEEP", "ftp://x"}, {"KEEP", "c:\\gone.htm"}, {"KEEP", "q"}},
       1},
      {FillFindReplaceList,
       {{"0", "Find Me  "}, {"1", ""}, {"MRUCount", "B"}},
       {{"KEEP", "Find Me  "}, {"KEEP", "B"}}},
      {FillRegEditFavorites,
       {{"My Key", "HKEY_X\\Y"}, {"Empty", ""}},
       {{"KEEP", "My Key", "HKEY_X\\Y"}},
       1},
      {FillCommandList,
       {{"a", "NotePad\\1"}, {"b", "C:\\\\1"}, {"c", "x"}, {"d", ""}, {"MRUCount", "abcd"}},
       {{"KEEP", "NotePad"}, {"KEEP", "C:\\"}, {"KEEP", ""}, {"KEEP", ""}}},
      {FillHostList, {{"Host1", "WWW.X"}, {"Host2", ""}}, {{"KEEP", "www.x"}, {"KEEP", ""}}},
  };
  int number = 0;
  for (const Case& c : cases) {
    SCOPED_TRACE("case " + std::to_string(number++));
    Key(c.values);
    Fill(c.reader, "1");
    EXPECT_EQ(SortedRows(), testing::Sorted(c.rows));
    EXPECT_EQ(Counters().TotalCount, list_.ListItems().Count() + c.hidden);
    EXPECT_EQ(Counters().MissingCount,
              std::count_if(c.rows.begin(), c.rows.end(),
                            [](const Shown& row) { return row.front() == "KILL"; }));
  }
}

TEST_F(ReadersTest, AFillSeesTheDiskAsItIsThen) {
  const std::string folder = Folder() + "\\Sub";
  Key({{"File1", folder + "\\A.txt"}, {"File2", folder + "\\B.txt"}, {"File3", folder}});
  const auto tags = [&] {
    Fill(FillRegistryList, "0");
    std::map<std::string, std::string> byName;
    for (const Shown& row : Rows()) byName[row[1]] = row[0];
    return byName["a.txt"] + " " + byName["b.txt"] + " " + byName["sub"];
  };
  EXPECT_EQ(tags(), "KILL KILL KILL");
  MakeFile("Sub\\b.TXT");
  EXPECT_EQ(tags(), "KILL KEEP KEEP");
  std::filesystem::rename(Host(folder + "\\b.TXT"), Host(folder + "\\A.txt"));
  EXPECT_EQ(tags(), "KEEP KILL KEEP");
}

// What one entry has taught about folders and drives must not show in another.
TEST_F(ReadersTest, EntriesShowTogetherWhatEachShowsAlone) {
  MakeFile("Some Folder\\Deeper\\Read Me.TXT");
  MakeFile("plain.txt");
  const struct {
    const char* path;  ///< behind the scratch folder
    const char* tag;   ///< in a list of files
  } rows[] = {
      {"\\SOME folder\\deeper\\READ ME.txt", "KEEP"},
      {"\\Some Folder\\Deeper\\Read Me.TXT", "KEEP"},
      {"\\Some Folder\\Deeper\\none.txt", "KILL"},
      {"\\Some Folder\\Deeper", "KEEP"},
      {"\\Some Folder\\Deeper\\", "KEEP"},
      {"\\some~tbr\\deeper\\read me.txt", "KEEP"},
      {"\\none\\x.txt", "KILL"},
      {"\\none\\..\\plain.txt", "KEEP"},
      {"\\none\\deeper\\x.txt", "KILL"},
      {"\\plain.txt\\x.txt", "KILL"},
      {"\\plain.txt\\..\\plain.txt", "KEEP"},
      {"\\*.txt", "KEEP"},
      {"\\none\\*.txt", "KILL"},
      {"\\Some Folder\\\\Deeper\\Read Me.TXT", "KEEP"},
      {"/Some Folder/Deeper/read me.txt", "KEEP"},
      {"\\Some Folder\\.\\Deeper\\READ ME.TXT", "KEEP"},
      {"\\plain.txt. ", "KEEP"},
      {"\\Some Folder.\\Deeper\\Read Me.TXT", "KEEP"},
      {"\\some folder\\nul", "KEEP"},
      {"\\none\\nul", "KILL"},
      {"\\\"plain.txt\"", "KILL"},
      {"\\pl|ain.txt", "KILL"},
  };
  std::vector<TextValue> values;
  const auto add = [&](const std::string& path) {
    values.emplace_back("File" + std::to_string(values.size()), path);
  };
  for (const auto& row : rows) {
    add(Folder() + row.path);
    Key({values.back()});
    Fill(FillRegistryList, "0");
    EXPECT_EQ(Rows().at(0)[0], row.tag) << row.path;
  }
  for (const char* path : {"C:\\", "C:", "Q:\\", "Q:\\a\\b.txt", "Q:\\a\\..\\c.txt", "q:d.txt",
                           "\\\\torvane-none\\share\\x.txt", "\\\\torvane-none\\share\\y\\z.txt",
                           "windows", "  ", "\\\\torvane-none"}) {
    add(path);
  }
  using Row = std::pair<Reader, const char*>;
  for (const auto& [reader, type] : {Row(FillRegistryList, "0"), Row(FillFolderList, "3")}) {
    std::map<std::string, std::vector<Shown>> alone;
    for (const TextValue& value : values) {
      Key({value});
      Fill(reader, type);
      alone[value.first] = Rows();
      if (!Rows().empty()) alone[value.first][0].push_back(Note(1));
    }
    for (int round = 0; round < 2; ++round) {
      Key(values);
      Fill(reader, type);
      ASSERT_EQ(Rows().size(), values.size());
      for (int n = 1; n <= list_.ListItems().Count(); ++n) {
        const Text& name = ShownIn(list_)->picture->values[list_.ListItems()(n).Number()].name;
        Shown row = Rows()[static_cast<std::size_t>(n - 1)];
        row.push_back(Note(n));
        EXPECT_EQ(alone[Utf8(name)], std::vector<Shown>{row}) << Utf8(name);
      }
      std::reverse(values.begin(), values.end());
    }
  }
}

TEST_F(ReadersTest, ADriveOrServerThatIsNotThereIsNamedForIt) {
  const std::string dead = "Missing: its drive or server can't be reached";
  Key({{"File1", "Q:\\Lists\\a.txt"},
       {"File2", "\\\\torvane-none\\share\\b.txt"},
       {"File3", Folder() + "\\c.txt"},
       {"File4", "//torvane-none/share/d.txt"}});
  Fill(FillRegistryList, "0");
  std::map<std::string, std::string> notes;
  for (int n = 1; n <= list_.ListItems().Count(); ++n) {
    notes[Utf8(list_.ListItems()(n).Text())] = Rows()[static_cast<std::size_t>(n - 1)][0] + Note(n);
  }
  EXPECT_EQ(notes,
            (std::map<std::string, std::string>{{"a.txt", "KILL" + dead},
                                                {"b.txt", "KILL" + dead},
                                                {"c.txt", "KILLMissing"},
                                                {"//torvane-none/share/d.txt", "KILL" + dead}}));
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

TEST_F(ReadersTest, WindowsFolderListsReadAllKeysOrNumberedOnes) {
  const std::string file = MakeFile("A.txt");
  MakeWindowsFile("torvane-test.ini", "[My List]\r\nRecentFile0=" + file +
                                          "\r\nSize=x\r\nRecentFile1=c:\\none\\b.txt\r\nEmpty=\r\n"
                                          "RecentFile9=c:\\none\\c.txt\r\n");
  FillEntry(FillIniList, EntryFromRow(u"X,torvane-test.ini,20,My List,RecentFile,0,*,*,*"));
  EXPECT_EQ(list_.ListItems().Count(), 4);
  EXPECT_EQ(Counters().MissingCount, 3);
  FillEntry(FillWinIniList, EntryFromRow(u"X,torvane-test.ini,23,My List,RecentFile,0,*,*,*"));
  EXPECT_EQ(Rows(), (std::vector<Shown>{{"KEEP", "a.txt", Lower(Folder())},
                                        {"KILL", "b.txt", "c:\\none"}}));
}

TEST_F(ReadersTest, ColumnsStandBeforeTheFolderIsAskedFor) {
  UseKey("Software\\Halvex\\Torvane");
  const struct {
    Reader reader;
    int columns;
  } readers[] = {{FillIniFolderList, 1}, {FillInstalledIniList, 2}};
  for (const auto& [reader, columns] : readers) {
    Counters() = {7, 5, 3};
    int seen = -1;
    toolkit_.asked = [&] {
      seen = list_.ColumnHeaders().Count();
      EXPECT_EQ(Counters().TotalCount, 0);
      EXPECT_EQ(Counters().DeletedCount, 0);
      EXPECT_EQ(Counters().MissingCount, 0);
    };
    FillEntry(reader, EntryFromRow(u"Some Viewer,torvane-test.ini,21,My List,Dir,0,*,*,*"));
    EXPECT_EQ(seen, columns);
  }
}

TEST_F(ReadersTest, AFileThatCannotBeReadIsTold) {
  MakeWindowsFile("torvane-test.ini", "[My List]\r\nFile1=C:\\A\r\n");
  const MruEntry entry = EntryFromRow(u"X,torvane-test.ini,20,My List,File,1,*,*,*");
  std::filesystem::resize_file(Host("C:\\windows\\torvane-test.ini"), std::uintmax_t{1} << 30U);
  try {
    FillEntry(FillIniList, entry);
    ADD_FAILURE() << "nothing was told";
  } catch (const RaisedError& error) {
    EXPECT_EQ(LowerCase(error.Description()),
              u"the file 'c:\\windows\\torvane-test.ini' has 1.0 gb, and no more than 64.0 mb are "
              u"read.");
  }
  EXPECT_EQ(list_.ColumnHeaders().Count(), 2);
  EXPECT_EQ(list_.ListItems().Count(), 0);
  EXPECT_EQ(Counters().TotalCount, 0);
}

TEST_F(ReadersTest, AsksForTheFolderOnceAndRemembersIt) {
  UseKey("Software\\Halvex\\Torvane");
  const std::string ini =
      MakeFile("Program\\torvane-test.ini", "[My List]\r\nDir1=" + Folder() + "\\\r\nDir2=\r\n");
  const MruEntry entry = EntryFromRow(u"Some Viewer,torvane-test.ini,21,My List,Dir,0,*,*,*");

  // The user gives up: the list has its columns, the store its key.
  FillEntry(FillIniFolderList, entry);
  EXPECT_EQ(toolkit_.folderTitles,
            std::vector<Text>{u"Choose the folder where Some Viewer is installed"});
  EXPECT_TRUE(toolkit_.messages.empty());
  EXPECT_EQ(list_.ColumnHeaders().Count(), 1);

  // A wrong folder, once more, then the right one.
  toolkit_.folders = {Utf16(Folder()), Utf16(Folder() + "\\Program")};
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
