#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "editing/delete_commands.h"
#include "editing/value_names.h"
#include "platform/winapi.h"
#include "readers/basListFill.h"
#include "storage/raised_error.h"
#include "support/list_window.h"
#include "support/printing.h"

namespace torvane {
namespace {

using namespace std::string_literals;
using testing::TextValue;
using testing::Utf16;
using testing::Utf8;
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
  const std::string shown = Utf8(LowerCase(Utf16(file)));
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
    SCOPED_TRACE(Utf8(c.row));
    Key(c.values);
    FillRow(c.reader, c.row);
    DeleteRows({c.doomed});
    EXPECT_EQ(Texts(kListKey), c.left);
    ExpectSameAfterReading();
  }
}

TEST_F(EditingTest, EveryCharacterIsKept) {
  const std::string file = MakeFile("\u0141\u00F3d\u017A\\\u65E5\u672C.TXT");
  const std::string shown = Utf8(LowerCase(Utf16(file)));
  Key({{"File1", "C:\\Za\u017C\u00F3\u0142\u0107.doc"}, {"File2", "x"}, {"File3", file}});
  FillRow(FillRegistryList, kFiles);
  EXPECT_EQ(Counters().MissingCount, 2);
  DeleteRows({u"x"});
  EXPECT_EQ(Texts(kListKey), (Stored{{"File1", "c:\\za\u017C\u00F3\u0142\u0107.doc"},
                                     {"File2", shown},
                                     {"MRUCount", "2"}}));
  DeleteRows({u"\u65E5\u672C.txt"});
  EXPECT_EQ(Texts(kListKey).size(), 2U);

  Key({{"\u0416 \u03A9 \u65E5\u672C", "HKEY_\U0001F600"}, {"\u0416", "HKEY_X"}, {"?", "HKEY_Y"}});
  FillRow(FillRegEditFavorites, u"Test,TorvaneTest\\List,8,*,*,*,*,*,*");
  DeleteRows({u"?"});
  DeleteRows({u"\u0416"});
  EXPECT_EQ(Texts(kListKey), (Stored{{"\u0416 \u03A9 \u65E5\u672C", "HKEY_\U0001F600"}}));
  DeleteRows({u"\u0416 \u03A9 \u65E5\u672C"});
  EXPECT_EQ(Texts(kListKey), Stored());
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

  // Windows keeps a copy for a program that may not write into its folder.
  Text local(MAX_PATH, u'\0');
  ExpandEnvironmentStringsW(Wide(u"%LOCALAPPDATA%"), WideBuffer(local), MAX_PATH);
  const std::filesystem::path copies = Host(ToAnsi(StripAtNull(local)) + "\\VirtualStore");
  const std::filesystem::path copy = copies / Folder().substr(3) / "Prog" / "torvane-test.ini";
  WriteBack();
  MakeFile("Prog\\torvane-test.ini", "[List]\r\nMRU1=C:\\Old\r\n");
  std::filesystem::create_directories(copy.parent_path());
  std::ofstream(copy, std::ios::binary) << "[List]\r\nMRU1=C:\\D\r\nMRU2=C:\\E\r\n";
  FillEntry(FillInstalledIniList, entry_);
  Select({u"d"});
  DeleteSelectedFromIni(list_);
  WriteBack();
  std::stringstream left;
  left << std::ifstream(copy, std::ios::binary).rdbuf();
  EXPECT_EQ(left.str(), "[List]\r\nMRU1=c:\\e\r\n");
  EXPECT_EQ(FileBytes(Folder() + "\\Prog\\torvane-test.ini"), "[List]\r\nMRU1=C:\\Old\r\n");
  std::filesystem::remove_all(copies);
}

class CommandsTest : public EditingTest {
 protected:
  std::vector<Text> Texts1() const {
    std::vector<Text> texts;
    for (int n = 1; n <= list_.ListItems().Count(); ++n)
      texts.push_back(list_.ListItems()(n).Text());
    return texts;
  }
  std::vector<Text> Selected() const {
    std::vector<Text> texts;
    for (int n = 1; n <= list_.ListItems().Count(); ++n) {
      if (list_.ListItems()(n).Selected()) texts.push_back(list_.ListItems()(n).Text());
    }
    return texts;
  }
  std::vector<StoredValue> Values() const {
    return KeyStore(Text(u"software\\TorvaneTest\\List")).Read().values;
  }

  Tree tree_{form_, u"Tree"};
  UndoStore undo_;
  const DeleteContext context_{list_, status_, tree_, undo_};
};

TEST_F(CommandsTest, RefuseAListThatAnotherProgramHasChanged) {
  Key({{"File1", "C:\\1"}, {"File2", "C:\\2"}, {"File3", "C:\\3"}});
  FillRow(FillRegistryList, kFiles);
  Select({u"2"});
  SetValue(kListKey, "File4", REG_SZ, "C:\\4");
  const auto before = Values();
  DeleteSelectedEntries(context_);
  EXPECT_EQ(Values(), before);
  ASSERT_EQ(toolkit_.messages.size(), 1U);
  EXPECT_TRUE(toolkit_.messages[0].text.starts_with(u"Another program has changed this list"));
  EXPECT_EQ(Texts1(), (std::vector<Text>{u"1", u"2", u"3", u"4"}));
  EXPECT_EQ(status_.Panels(2).Text(), u"Total: 4");
  UndoDelete(context_);
  EXPECT_EQ(toolkit_.messages.size(), 1U);
}

TEST_F(CommandsTest, TakeBackTenDeletionsLastFirst) {
  std::vector<std::vector<StoredValue>> states;
  std::vector<TextValue> values;
  for (int n = 1; n <= 11; ++n) {
    values.emplace_back("File" + std::to_string(n), "C:\\" + std::to_string(n));
  }
  Key(values);
  SetValue(kListKey, "odd", REG_BINARY, "C:\\odd");
  FillRow(FillRegistryList, kFiles);
  for (int n = 1; n <= 10; ++n) {
    states.push_back(Values());
    Select({Decimal(n)});
    DeleteSelectedEntries(context_);
  }
  EXPECT_EQ(list_.Hint(), u"Ctrl+Z takes it back");
  EXPECT_EQ(status_.Hint(), u"Ctrl+Z takes it back");
  for (int n = 10; n >= 1; --n) {
    UndoDelete(context_);
    EXPECT_EQ(Values(), states.back()) << n;
    EXPECT_EQ(Selected(), std::vector<Text>{Decimal(n)});
    EXPECT_EQ(status_.Panels(2).Text(), u"Total: " + Decimal(13 - n));
    states.pop_back();
  }
  EXPECT_EQ(list_.Hint(), u"");
  UndoDelete(context_);
  EXPECT_TRUE(toolkit_.messages.empty());
}

TEST_F(CommandsTest, TakeNothingBackOverSomeoneElsesWork) {
  Key({{"File1", "C:\\1"}, {"File2", "C:\\2"}});
  FillRow(FillRegistryList, kFiles);
  const auto before = Values();
  DeleteAllEntries(context_);
  SetValue(kListKey, "File1", REG_SZ, "C:\\new");
  const auto changed = Values();
  UndoDelete(context_);
  EXPECT_EQ(Values(), changed);
  EXPECT_EQ(toolkit_.messages.size(), 1U);
  EXPECT_EQ(Texts1(), std::vector<Text>{u"new"});
  Key({{"MRUCount", "0"}});
  UndoDelete(context_);
  EXPECT_EQ(Values(), before);
}

TEST_F(CommandsTest, RefuseAFormOfNamesThatIsNotKnown) {
  Key({{"File1", "C:\\1"}, {"File2", "C:\\2"}});
  FillRow(FillRegistryList, u"Test,TorvaneTest\\List,0,*,File,x,*,*,*");
  const auto before = Values();
  Select({u"1"});
  EXPECT_THROW(DeleteSelectedEntries(context_), RaisedError);
  EXPECT_EQ(Values(), before);
  EXPECT_EQ(Selected(), std::vector<Text>{u"1"});
  DeleteAllEntries(context_);
  EXPECT_TRUE(Values().empty());
}

TEST_F(CommandsTest, PutBackWhatTheyDeletedWhenAWriteFails) {
  Key({{"File1", "C:\\1"}, {"x", "C:\\2"}, {"File3", "C:\\3"}, {"", "C:\\4"}});
  SetValue(kListKey, "odd", REG_BINARY, "C:\\odd");
  // The survivors' names are longer than a name may be.
  const Text prefix(16383, u'n');
  FillRow(FillRegistryList, u"Test,TorvaneTest\\List,0,*," + prefix + u",1,*,*,*");
  const auto before = Values();
  Select({u"1", u"3"});
  EXPECT_THROW(DeleteSelectedEntries(context_), RaisedError);
  EXPECT_EQ(Values(), before);
  EXPECT_EQ(Selected(), (std::vector<Text>{u"1", u"3"}));
  EXPECT_EQ(list_.ListItems().Count(), 5);
  EXPECT_EQ(Counters().DeletedCount, 0);
  EXPECT_EQ(list_.Hint(), u"");
}

class IniCommandsTest : public CommandsTest {
 protected:
  IniCommandsTest() { UseKey("Software\\Halvex\\Torvane"); }
};

TEST_F(IniCommandsTest, RefuseWhatTheFileCantHold) {
  const std::string plain = "[List]\r\nFile1=C:\\A\r\nFile2=C:\\B\r\n; c\r\nFile3=C:\\C\r\n";
  const struct {
    const char* what;
    std::string bytes;
    Text prefix;
  } cases[] = {
      {"names outside its page", plain, u"\u0416"},
      {"a survivor that is no text",
       "\xEF\xBB\xBF[List]\r\nFile1=C:\\A\r\nFile2=\xC3\r\nFile3=C\r\n", u"File"},
  };
  int number = 0;
  for (const auto& [what, bytes, prefix] : cases) {
    SCOPED_TRACE(what);
    const std::string name = "torvane-refuse" + std::to_string(++number) + ".ini";
    MakeWindowsFile(name, bytes);
    FillRow(FillIniList, u"X," + Utf16(name) + u",20,List," + prefix + u",1,*,*,*");
    list_.ListItems()(1).Selected(true);
    const auto rows = Rows();
    EXPECT_THROW(DeleteSelectedEntries(context_), RaisedError);
    EXPECT_EQ(Rows(), rows);
    EXPECT_EQ(Selected().size(), 1U);
    EXPECT_EQ(Counters().TotalCount, 3);
    EXPECT_EQ(Counters().DeletedCount, 0);
    EXPECT_EQ(WindowsFileBytes(name), bytes);
    EXPECT_EQ(list_.Hint(), u"");
  }
}

TEST(UndoStoreTest, ForgetsTheOldestBeyondItsRoom) {
  // Each deletion takes what was and what is left, some 24 MB: two have room.
  const auto picture = std::make_shared<const StorePicture>(
      StorePicture{true, {{u"large", REG_BINARY, Bytes(12 << 20)}}});
  UndoStore undo;
  for (const auto* store : {u"one", u"two", u"three"}) {
    undo.Push({store, picture, picture, Clearing::EachValue, {u"gone"}});
  }
  EXPECT_FALSE(undo.Holds(u"one"));
  EXPECT_TRUE(undo.Holds(u"two"));
  EXPECT_TRUE(undo.Holds(u"three"));
  undo.Push({u"unchanged", picture, picture, Clearing::EachValue, {}});
  EXPECT_FALSE(undo.Holds(u"unchanged"));
  EXPECT_TRUE(undo.Holds(u"two"));
}

TEST_F(CommandsTest, GiveTheRunBoxNoNamesButLetters) {
  std::vector<TextValue> values;
  const std::vector<Text> names = NamesOfForm(u"a*").First(40);
  for (int n = 0; n < 40; ++n) {
    values.emplace_back(Utf8(names[static_cast<std::size_t>(n)]), std::to_string(n) + "\\1");
  }
  values.emplace_back("MRUList", "ba");
  Key(values);
  FillRow(FillCommandList, u"Test,TorvaneTest\\List,9,*,a,*,MRUList,S,*");
  Select({u"0"});
  DeleteSelectedEntries(context_);
  EXPECT_EQ(list_.ListItems().Count(), 39);
  std::string order = Texts(kListKey)["MRUList"];
  std::sort(order.begin(), order.end());
  EXPECT_EQ(order, "abcdefghijklmnopqrstuvwxyz");
  ExpectSameAfterReading();
}

TEST_F(EditingTest, CommandsTellToRestartForTheRunBox) {
  Tree tree(form_, u"Tree");
  Node& category = tree.Nodes().Add(nullptr, NodeRelationship::None, u"System", 1);
  Node& program = tree.Nodes().Add(&category, NodeRelationship::Child, u"Run", 3);
  Key({{"File1", MakeFile("a.txt")}, {"File2", "C:\\2"}, {"File3", "C:\\3"}});
  FillRow(FillRegistryList, kFiles);
  UndoStore undo;
  const DeleteContext context{list_, status_, tree, undo};
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
