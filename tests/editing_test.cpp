#include <gtest/gtest.h>

#include "editing/delete_commands.h"
#include "editing/rewrite_ini.h"
#include "editing/rewrite_registry.h"
#include "editing/value_names.h"
#include "readers/basListFill.h"
#include "readers/ini_folders.h"
#include "storage/raised_error.h"
#include "support/list_window.h"
#include "support/printing.h"

namespace torvane {
namespace {

using namespace std::string_literals;
using testing::TextValue;
using Stored = std::map<std::string, std::string>;

TEST(ValueNamesTest, FollowTheNameForm) {
  struct Case {
    Text form;
    int n;
    Text name;
  };
  const Case cases[] = {
      {u"00", 3, u"2"},           {u"11", 3, u"3"},
      {u"File1", 2, u"File2"},    {u"File0", 3, u"File2"},
      {u"file0", 1, u"file0"},    {u"LastDirs.0", 2, u"LastDirs.1"},
      {u"Item_0", 1, u"Item_0"},  {u"File00", 1, u"File00"},
      {u"File00", 11, u"File10"}, {u"File00", 101, u"File100"},
      {u"a*", 1, u"A"},           {u"a*", 26, u"Z"},
      {u"a*", 33, u"{"},          {u"**", 1, u""},
  };
  for (const Case& c : cases) EXPECT_EQ(EntryValueName(c.form, c.n), c.name) << c.form << c.n;
}

class EditingTest : public testing::ListWorld {
 protected:
  /// Fills the list as a row of the catalogue says.
  void FillRow(Reader reader, const Text& row) {
    entry_ = EntryFromRow(row);
    reader_ = reader;
    FillEntry(reader, entry_);
  }
  /// Selects the rows with these first-column texts and deletes them.
  void DeleteRows(const std::vector<Text>& texts) {
    Select(texts);
    DeleteSelectedFromRegistry(list_);
  }
  void Select(const std::vector<Text>& texts) {
    for (int n = 1; n <= list_.ListItems().Count(); ++n) {
      ListItem& item = list_.ListItems()(n);
      item.Selected(std::find(texts.begin(), texts.end(), item.Text()) != texts.end());
    }
  }
  /// Whether a new reading shows what the list shows now.
  void ExpectSameAfterReading() {
    const auto rows = Rows();
    FillEntry(reader_, entry_);
    EXPECT_EQ(SortedRows(), testing::Sorted(rows));
  }

  static constexpr auto kFiles = u"Test,TorvaneTest\\List,0,*,File,1,MRUCount,S,*";
  static constexpr auto kRun = u"Test,TorvaneTest\\List,9,*,a,*,MRUCount,S,*";
  MruEntry entry_;
  Reader reader_ = nullptr;
};

TEST_F(EditingTest, DeletesSelectedAndRenumbers) {
  const std::string file = MakeFile("Dir\\A.TXT");
  Key({{"File1", file},
       {"File2", "C:\\B.TXT"},
       {"File3", "bare.txt"},
       {"Empty", ""},
       {"MRUCount", "3"},
       {"", "default"}});
  SetValue(std::string(kListKey) + "\\Sub", "x", 1, "y");
  FillRow(FillRegistryList, kFiles);
  DeleteRows({u"b.txt", u"default"});
  const std::string shown = ToAnsi(LowerCase(FromAnsi(file)));
  EXPECT_EQ(Texts(kListKey), (Stored{{"File1", shown}, {"File2", "bare.txt"}, {"MRUCount", "2"}}));
  EXPECT_EQ(Values(std::string(kListKey) + "\\Sub").size(), 1U);
  EXPECT_EQ(Counters().DeletedCount, 2);
  EXPECT_EQ(Counters().MissingCount, 1);
  ExpectSameAfterReading();

  FillRow(FillRegistryList, kFiles);
  DeleteMissingFromRegistry(list_);
  EXPECT_EQ(Texts(kListKey), (Stored{{"File1", shown}, {"MRUCount", "1"}}));
  DeleteAllFromRegistry(list_);
  EXPECT_EQ(Texts(kListKey), (Stored{{"MRUCount", "0"}}));
  EXPECT_EQ(Counters().TotalCount, 0);
}

TEST_F(EditingTest, WritesEachFormAsItsProgramReadsIt) {
  struct Case {
    Reader reader;
    Text row;  ///< as in the catalogue
    std::vector<TextValue> values;
    Text doomed;
    Stored left;
  };
  const Case cases[] = {
      {FillRegistryList,
       u"Test,TorvaneTest\\List,0,*,File,1,MRUCount,D,*",
       {{"File1", "C:\\A"}},
       u"a",
       {{"MRUCount", "\0\0\0"s}}},
      {FillFavoritesList,
       u"Test,TorvaneTest\\List,1,*,1,1,MRUCount,S,*",
       {{"1", "My Icons|C:\\None\\A.ICO"}, {"2", "B|C:\\B.ICO"}},
       u"b.ico",
       {{"1", "My Icons|c:\\none\\a.ico"}, {"MRUCount", "1"}}},
      {FillCommaList,
       u"Test,TorvaneTest\\List,4,*,MRU,1,MRUCount,S,*",
       {{"MRU1", "C:\\A\\B.ICO,7"}, {"MRU2", "x.ico"}},
       u"x.ico",
       {{"MRU1", "c:\\a\\b.ico,1"}, {"MRUCount", "1"}}},
      {FillFolderList,
       u"Test,TorvaneTest\\List,3,*,BM,0,MRUCount,S,*",
       {{"BM0", "C:\\None\\"}, {"BM1", "C:\\Two"}},
       u"c:\\two",
       {{"BM0", "c:\\none"}, {"MRUCount", "1"}}},
      {FillFindReplaceList,
       u"Test,TorvaneTest\\List,6,*,0,0,*,*,*",
       {{"0", "gone"}, {"1", "A \\ B%x%y"}},
       u"gone",
       {{"0", "A \\ B%x%y"}}},
      {FillUrlList,
       u"Test,TorvaneTest\\List,2,*,URL,1,*,*,*",
       {{"URL1", "http://A"}, {"URL2", "b"}},
       u"b",
       {{"URL1", "http://a"}}},
      {FillRegEditFavorites,
       u"Test,TorvaneTest\\List,8,*,*,*,*,*,*",
       {{"My Key", "HKEY_X"}, {"Other", "HKEY_Y"}},
       u"Other",
       {{"My Key", "HKEY_X"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToAnsi(c.row));
    Key(c.values);
    FillRow(c.reader, c.row);
    DeleteRows({c.doomed});
    EXPECT_EQ(Texts(kListKey), c.left);
    ExpectSameAfterReading();
  }
}

TEST_F(EditingTest, ListsByValueNameKeepTheirSurvivorsUntouched) {
  using namespace std::string_view_literals;
  Key({{"C:\\None\\One.CSS", "kept data"}, {"C:\\Two.CSS", "x"}, {"C:\\Three.CSS", ""}});
  SetValue(kListKey, "C:\\Four.css", REG_BINARY, "\x01\x02"sv);
  FillRow(FillValueNameList, u"Test,TorvaneTest\\List,5,*,*,*,*,*,*");
  DeleteRows({u"two.css"});
  ExpectSameAfterReading();
  DeleteRows({u"three.css"});
  const auto values = Values(kListKey);
  EXPECT_EQ(values.size(), 2U);
  EXPECT_EQ(values.at("C:\\None\\One.CSS"), "kept data\0"sv);
  EXPECT_EQ(values.at("C:\\Four.css"), "\x01\x02");
}

TEST_F(EditingTest, RunListKeepsDataAndOrderOfUse) {
  Key({{"a", "calc\\1"},
       {"b", "NotePad X\\1"},
       {"c", "regedit\\1"},
       {"d", "odd"},
       {"MRUCount", "cab"}});
  SetValue(kListKey, "e", REG_EXPAND_SZ, "%windir%\\x\\1");
  FillRow(FillCommandList, kRun);
  DeleteRows({u"calc"});
  EXPECT_EQ(Texts(kListKey), (Stored{{"A", "NotePad X\\1"},
                                     {"B", "regedit\\1"},
                                     {"C", "odd"},
                                     {"D", "%windir%\\x\\1"},
                                     {"MRUCount", "bacd"}}));
  ExpectSameAfterReading();
  DeleteRows({u"regedit"});
  EXPECT_EQ(Texts(kListKey)["MRUCount"], "abc");
  DeleteAllFromRegistry(list_);
  EXPECT_EQ(Texts(kListKey), (Stored{{"MRUCount", ""}}));
}

TEST_F(EditingTest, RunListWritesWhatVanishedAnew) {
  Key({{"a", "calc\\1"}, {"b", "x\\1"}, {"MRUCount", "ab"}});
  FillRow(FillCommandList, kRun);
  Key({{"b", "x\\1"}, {"MRUCount", "ab"}});
  DeleteRows({u"x"});
  EXPECT_EQ(Texts(kListKey), (Stored{{"A", "calc\\1"}, {"MRUCount", "a"}}));
}

class IniEditingTest : public EditingTest {
 protected:
  IniEditingTest() { UseKey("Software\\Halvex\\Torvane"); }
  std::string Ini() const { return WindowsFileBytes("torvane-test.ini"); }
};

TEST_F(IniEditingTest, RemovesByNumberAndLeavesOtherLines) {
  MakeWindowsFile("torvane-test.ini",
                  "; mine\r\n[List]\r\nFile0=C:\\A\r\nSize=3\r\nFile1=C:\\B\r\nFile2=C:\\C\r\n"
                  "[Other]\r\nx=1\r\n");
  FillRow(FillWinIniList, u"X,torvane-test.ini,23,List,File,0,*,*,*");
  Select({u"b"});
  DeleteSelectedFromIni(list_);
  EXPECT_EQ(Ini(),
            "; mine\r\n[List]\r\nSize=3\r\nFile0=c:\\a\r\nFile1=c:\\c\r\n[Other]\r\nx=1\r\n");
  EXPECT_EQ(Counters().DeletedCount, 1);
  EXPECT_EQ(Counters().MissingCount, 2);
  DeleteMissingFromIni(list_);
  EXPECT_EQ(Ini(), "; mine\r\n[List]\r\nSize=3\r\n[Other]\r\nx=1\r\n");
}

TEST_F(IniEditingTest, ProgramsWithTheirOwnFolder) {
  MakeFile("Prog\\torvane-test.ini", "[List]\r\nMRU1=C:\\A\r\nMRU2=C:\\B\r\nOther=C:\\C\r\n");
  MakeKey("Software\\Halvex\\Torvane\\Paths", {{"Resource Hacker", Folder() + "\\Prog\\"}});
  FillRow(FillInstalledIniList, u"Resource Hacker,torvane-test.ini,22,List,MRU,1,*,*,*");
  Select({u"a"});
  DeleteSelectedFromIni(list_);
  FillEntry(FillInstalledIniList, entry_);
  EXPECT_EQ(Rows(), (std::vector<testing::Shown>{{"KILL", "b", "c:\\"}, {"KILL", "c", "c:\\"}}));
  DeleteAllFromIni(list_);
  FillEntry(FillInstalledIniList, entry_);
  EXPECT_EQ(list_.ListItems().Count(), 0);
}

TEST_F(EditingTest, CommandsTellToRestartForTheRunBox) {
  Tree tree(form_, u"Tree");
  Node& category = tree.Nodes().Add(nullptr, NodeRelationship::None, u"System", 1);
  Node& program = tree.Nodes().Add(&category, NodeRelationship::Child, u"Run", 3);
  Key({{"File1", MakeFile("a.txt")}, {"File2", "C:\\2"}, {"File3", "C:\\3"}});
  FillRow(FillRegistryList, kFiles);
  const DeleteContext context{list_, status_, tree};
  list_.ListItems()(2).Selected(true);
  DeleteSelectedEntries(context);
  EXPECT_EQ(status_.Panels(2).Text(), u"Total: 2");
  EXPECT_EQ(status_.Panels(3).Text(), u"Missing: 1");
  tree.SelectedItem(program);
  DeleteMissingEntries(context);
  EXPECT_TRUE(toolkit_.messages.empty());
  DeleteAllEntries(context);
  ASSERT_EQ(toolkit_.messages.size(), 1U);
  EXPECT_EQ(toolkit_.messages[0].text, u"You must restart for the changes to take effect.");
  EXPECT_EQ(toolkit_.messages[0].style, 48U);
}

}  // namespace
}  // namespace torvane
