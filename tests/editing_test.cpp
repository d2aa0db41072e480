#include <gtest/gtest.h>

#include <sstream>

#include "editing/delete_commands.h"
#include "editing/rewrite_ini.h"
#include "editing/rewrite_registry.h"
#include "editing/value_names.h"
#include "platform/extras.h"
#include "readers/basListFill.h"
#include "readers/ini_folders.h"
#include "storage/raised_error.h"
#include "support/list_window.h"
#include "support/printing.h"

namespace torvane {
namespace {

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

class CatalogueTest : public testing::ScratchWorld {};

TEST_F(CatalogueTest, EveryNumberedListHasItsNameForm) {
  const auto bytes = DataResource(1);
  std::istringstream catalogue(
      std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  int rows = 0;
  for (std::string line; std::getline(catalogue, line);) {
    const auto equals = line.find('=');
    if (equals == std::string::npos) continue;
    const MruEntry entry = EntryFromRow(FromAnsi(line.substr(equals + 1)));
    ++rows;
    if (IsIniList(entry.ListType) || entry.ValuePrefix == kNone) continue;
    EXPECT_NE(EntryValueName(entry.ValuePrefix + entry.FirstIndex, 1), u"") << entry.EntryName;
  }
  EXPECT_EQ(rows, 97);
}

class EditingTest : public testing::ListWorld {
 protected:
  void FillType(Reader reader, const std::string& type, const Text& prefix, const Text& first) {
    entry_ = ListEntry(type);
    entry_.ValuePrefix = prefix;
    entry_.FirstIndex = first;
    if (prefix == kNone) entry_.CountValue = kNone;
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
  FillType(FillRegistryList, "0", u"File", u"1");
  DeleteRows({u"b.txt", u"default"});
  const std::string shown = ToAnsi(LowerCase(FromAnsi(file)));
  EXPECT_EQ(Texts(kListKey), (Stored{{"File1", shown}, {"File2", "bare.txt"}, {"MRUCount", "2"}}));
  EXPECT_EQ(Values(std::string(kListKey) + "\\Sub").size(), 1U);
  EXPECT_EQ(Counters().DeletedCount, 2);
  EXPECT_EQ(Counters().MissingCount, 1);
  ExpectSameAfterReading();

  FillType(FillRegistryList, "0", u"File", u"1");
  DeleteMissingFromRegistry(list_);
  EXPECT_EQ(Texts(kListKey), (Stored{{"File1", shown}, {"MRUCount", "1"}}));
  DeleteAllFromRegistry(list_);
  EXPECT_EQ(Texts(kListKey), (Stored{{"MRUCount", "0"}}));
  EXPECT_EQ(Counters().TotalCount, 0);
}

TEST_F(EditingTest, WritesEachFormAsItsProgramReadsIt) {
  struct Case {
    Reader reader;
    std::string type;
    Text prefix, first;
    std::vector<TextValue> values;
    Text doomed;
    Stored left;
  };
  const Case cases[] = {
      {FillFavoritesList,
       "1",
       u"1",
       u"1",
       {{"1", "My Icons|C:\\None\\A.ICO"}, {"2", "B|C:\\B.ICO"}},
       u"b.ico",
       {{"1", "My Icons|c:\\none\\a.ico"}, {"MRUCount", "1"}}},
      {FillCommaList,
       "4",
       u"MRU",
       u"1",
       {{"MRU1", "C:\\A\\B.ICO,7"}, {"MRU2", "x.ico"}},
       u"x.ico",
       {{"MRU1", "c:\\a\\b.ico,1"}, {"MRUCount", "1"}}},
      {FillFolderList,
       "3",
       u"BM",
       u"0",
       {{"BM0", "C:\\None\\"}, {"BM1", "C:\\Two"}},
       u"c:\\two",
       {{"BM0", "c:\\none"}, {"MRUCount", "1"}}},
      {FillFindReplaceList,
       "6",
       u"0",
       u"0",
       {{"0", "gone"}, {"1", "A \\ B%x%y"}},
       u"gone",
       {{"0", "A \\ B%x%y"}, {"MRUCount", "1"}}},
      {FillUrlList,
       "2",
       u"URL",
       u"1",
       {{"URL1", "http://A"}, {"URL2", "b"}},
       u"b",
       {{"URL1", "http://a"}, {"MRUCount", "1"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.type);
    Key(c.values);
    FillType(c.reader, c.type, c.prefix, c.first);
    DeleteRows({c.doomed});
    EXPECT_EQ(Texts(kListKey), c.left);
  }
}

TEST_F(EditingTest, CountValueGoesByItsKind) {
  entry_ = ListEntry("0");
  entry_.CountKind = u"D";
  Key({{"File1", "C:\\A"}});
  FillEntry(FillRegistryList, entry_);
  DeleteAllFromRegistry(list_);
  EXPECT_EQ(Values(kListKey)["MRUCount"], std::string(4, '\0'));
}

TEST_F(EditingTest, ListsByValueNameKeepTheirSurvivorsUntouched) {
  using namespace std::string_view_literals;
  Key({{"C:\\None\\One.CSS", "kept data"}, {"C:\\Two.CSS", "x"}, {"C:\\Three.CSS", ""}});
  SetValue(kListKey, "C:\\Four.css", REG_BINARY, "\x01\x02"sv);
  FillType(FillValueNameList, "5", u"*", u"*");
  DeleteRows({u"two.css"});
  ExpectSameAfterReading();
  DeleteRows({u"three.css"});
  const auto values = Values(kListKey);
  EXPECT_EQ(values.size(), 2U);
  EXPECT_EQ(values.at("C:\\None\\One.CSS"), "kept data\0"sv);
  EXPECT_EQ(values.at("C:\\Four.css"), "\x01\x02");
}

TEST_F(EditingTest, RegistryEditorFavouritesStayAsTheyAre) {
  Key({{"My Key", "HKEY_X"}, {"Other", "HKEY_Y"}});
  FillType(FillRegEditFavorites, "8", u"*", u"*");
  DeleteRows({u"Other"});
  EXPECT_EQ(Texts(kListKey), (Stored{{"My Key", "HKEY_X"}}));
  ExpectSameAfterReading();
}

TEST_F(EditingTest, RunListKeepsDataAndOrderOfUse) {
  Key({{"a", "calc\\1"},
       {"b", "NotePad X\\1"},
       {"c", "regedit\\1"},
       {"d", "odd"},
       {"MRUCount", "cab"}});
  SetValue(kListKey, "e", REG_EXPAND_SZ, "%windir%\\x\\1");
  FillType(FillCommandList, "9", u"a", u"*");
  DeleteRows({u"calc"});
  auto values = Texts(kListKey);
  EXPECT_EQ(values["A"], "NotePad X\\1");
  EXPECT_EQ(values["B"], "regedit\\1");
  EXPECT_EQ(values["C"], "odd");
  EXPECT_EQ(values["D"], "%windir%\\x\\1");
  EXPECT_EQ(values["MRUCount"], "bacd");
  ExpectSameAfterReading();
  DeleteRows({u"regedit"});
  values = Texts(kListKey);
  EXPECT_EQ(values["B"], "odd");
  EXPECT_EQ(values["MRUCount"], "abc");
  DeleteAllFromRegistry(list_);
  EXPECT_EQ(Texts(kListKey), (Stored{{"MRUCount", ""}}));
}

TEST_F(EditingTest, RunListWritesWhatVanishedAnew) {
  Key({{"a", "calc\\1"}, {"b", "x\\1"}, {"MRUCount", "ab"}});
  FillType(FillCommandList, "9", u"a", u"*");
  Key({{"b", "x\\1"}, {"MRUCount", "ab"}});
  DeleteRows({u"x"});
  EXPECT_EQ(Texts(kListKey), (Stored{{"A", "calc\\1"}, {"MRUCount", "a"}}));
}

class IniEditingTest : public EditingTest {
 protected:
  IniEditingTest() {
    UseKey("Software\\Halvex\\Torvane");
    entry_ = {.EntryName = u"X",
              .Location = u"torvane-test.ini",
              .ListType = u"23",
              .Section = u"List",
              .ValuePrefix = u"File",
              .FirstIndex = u"0",
              .CountValue = u"*",
              .CountKind = u"*",
              .ExeName = {}};
  }
  std::string Ini() const { return WindowsFileBytes("torvane-test.ini"); }
};

TEST_F(IniEditingTest, RemovesByNumberAndLeavesOtherLines) {
  MakeWindowsFile("torvane-test.ini",
                  "; mine\r\n[List]\r\nFile0=C:\\A\r\nSize=3\r\nFile1=C:\\B\r\nFile2=C:\\C\r\n"
                  "[Other]\r\nx=1\r\n");
  FillEntry(FillWinIniList, entry_);
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
  entry_.EntryName = u"Resource Hacker";
  entry_.ListType = u"22";
  entry_.ValuePrefix = u"MRU";
  entry_.FirstIndex = u"1";
  FillEntry(FillInstalledIniList, entry_);
  Select({u"a"});
  DeleteSelectedFromIni(list_);
  FillEntry(FillInstalledIniList, entry_);
  EXPECT_EQ(Rows().size(), 2U);
  EXPECT_EQ(list_.ListItems()(2).Text(), u"c");
  DeleteAllFromIni(list_);
  FillEntry(FillInstalledIniList, entry_);
  EXPECT_EQ(list_.ListItems().Count(), 0);
}

class DeleteCommandsTest : public EditingTest {
 protected:
  DeleteCommandsTest() {
    Node& category = tree_.Nodes().Add(nullptr, NodeRelationship::None, u"System", 1);
    program_ = &tree_.Nodes().Add(&category, NodeRelationship::Child, u"Run", 3);
  }
  Tree tree_{form_, u"Tree"};
  Node* program_ = nullptr;
};

TEST_F(DeleteCommandsTest, ShowTheCountersAndTellToRestartForTheRunBox) {
  const std::string file = MakeFile("a.txt");
  Key({{"File1", file},
       {"File2", "C:\\2"},
       {"File3", "C:\\3"},
       {"File4", "C:\\4"},
       {"File5", file}});
  FillType(FillRegistryList, "0", u"File", u"1");
  const DeleteContext context{list_, status_, tree_};
  list_.ListItems()(1).Selected(true);
  list_.ListItems()(2).Selected(true);
  DeleteSelectedEntries(context);
  EXPECT_EQ(status_.Panels(2).Text(), u"Total: 3");
  EXPECT_EQ(status_.Panels(3).Text(), u"Missing: 2");
  list_.ListItems()(1).Selected(true);
  DeleteSelectedEntries(context);
  EXPECT_EQ(status_.Panels(2).Text(), u"Total: 2");
  EXPECT_TRUE(toolkit_.messages.empty());
  tree_.SelectedItem(*program_);
  DeleteMissingEntries(context);
  EXPECT_EQ(status_.Panels(2).Text(), u"Total: 1");
  EXPECT_TRUE(toolkit_.messages.empty());
  DeleteAllEntries(context);
  EXPECT_EQ(status_.Panels(2).Text(), u"Total: 0");
  ASSERT_EQ(toolkit_.messages.size(), 1U);
  EXPECT_EQ(toolkit_.messages[0].text, u"You must restart for the changes to take effect.");
  EXPECT_EQ(toolkit_.messages[0].style, 48U);
}

}  // namespace
}  // namespace torvane
