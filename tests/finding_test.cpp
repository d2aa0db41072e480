#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "editing/delete_commands.h"
#include "finding/known_lists.h"
#include "finding/office_lists.h"
#include "platform/extras.h"
#include "platform/winapi.h"
#include "storage/names.h"
#include "support/list_window.h"
#include "support/printing.h"

namespace torvane {
namespace {

using namespace std::string_literals;
using testing::Utf8;

constexpr auto kBase = "Software\\TorvaneTest";

struct Raw {
  std::string name;
  unsigned type;
  std::string data;
};

// A value with a text, closed by its NUL.
Raw Sz(const std::string& name, const std::string& text, unsigned type = 1) {
  return {name, type, text + '\0'};
}
Raw Number(const std::string& name, char number) {
  return {name, 4, number + "\0\0\0"s};
}

class FindingTest : public testing::ListWorld {
 protected:
  FindingTest() { UseKey(kBase); }
  void Make(const std::string& key, const std::vector<Raw>& values) {
    for (const Raw& value : values)
      SetValue(kBase + ("\\" + key), value.name, value.type, value.data);
  }
  /// What is found below kBase.
  static std::vector<FoundList> Found() {
    ListFinder finder(KeysOfRows(CatalogueRows()));
    while (!finder.Look(std::chrono::milliseconds(6))) {
    }
    auto lists = std::move(finder).Lists();
    std::erase_if(
        lists, [](const FoundList& list) { return list.key.find(u"TorvaneTest") == Text::npos; });
    return lists;
  }
  void Show(const FoundList& list) {
    ClearEntryList(list_);
    FillList(list.description, list_);
  }
  static std::string Data(const std::string& key, const std::string& name) {
    auto values = Values(kBase + ("\\" + key));
    return values.contains(name) ? values[name] : "absent";
  }
};

TEST_F(FindingTest, TakesAKeyForAListOnlyWhereAllOfItSaysSo) {
  const Raw a = Sz("File1", "C:\\a.txt");
  const Raw b = Sz("File2", "D:\\b.txt");
  struct Case {
    std::string key;
    std::vector<Raw> values;
    bool isList;
  };
  const Case cases[] = {
      {"Recent File List", {a}, true},
      {"Recent Files", {a, b}, true},
      {"RECENTFILES", {b, a}, true},
      {"FileMRU", {Sz("Item 1", "\\\\srv\\pub\\a"), Sz("Item 2", "C:\\")}, true},
      {"filehistory", {Sz("0", "C:\\a"), Sz("1", "C:\\b")}, true},
      {"Any", {Sz("LastDir00", "C:\\a"), Sz("LastDir01", "C:\\b", 2)}, true},
      {"Counted MRU", {a, Number("FileCount", 2), b}, true},
      {"Text count MRU", {a, b, Sz("Total", "2")}, true},
      {"TypedPaths", {Sz("url1", "C:\\a"), Sz("url2", "C:\\b")}, true},
      // Nothing says that they are recent.
      {"Search Paths", {Sz("Path1", "C:\\a"), Sz("Path2", "C:\\b")}, false},
      {"Plastic", {Sz("Blast1", "C:\\a"), Sz("Blast2", "C:\\b")}, false},
      {"ProgramRules", {a, b}, false},
      // Not all of them are paths.
      {"Recent searches", {Sz("1", "C:\\a;D:\\b"), Sz("2", "C:\\a")}, false},
      {"Recent servers", {Sz("1", "\\\\a\\b;\\\\c\\d"), Sz("2", "C:\\a")}, false},
      {"Recent windows", {Sz("Pos1", "10,20,640,480"), Sz("Pos2", "0,0,1,1")}, false},
      {"Recent Fonts", {Sz("Font1", "Sans"), Sz("Font2", "Serif")}, false},
      {"Recent Colors", {Number("Color1", 7), Number("Color2", 9)}, false},
      {"Recent words", {a, Sz("File2", "b.txt")}, false},
      {"Recent pages", {a, Sz("File2", "http://a.example/b")}, false},
      {"Recent commands", {a, Sz("File2", "C:\\b.exe \"x\"")}, false},
      {"Recent gap", {a, Sz("File2", "")}, false},
      {"Recent bytes", {a, {"File2", 3, "C:\\b"}}, false},
      {"Recent devices", {a, Sz("File2", "\\\\?\\C:\\b")}, false},
      {"Recent variables", {a, Sz("File2", "%TEMP%\\b", 2)}, false},
      {"Recent ends", {a, {"File2", 1, "C:\\b\0c\0"s}}, false},
      // Their names aren't one row of numbers.
      {"Recent two", {a, Sz("Path2", "C:\\b")}, false},
      {"Recent case", {a, Sz("FILE2", "C:\\b")}, false},
      {"Recent hole", {a, Sz("File3", "C:\\b")}, false},
      {"Recent late", {b, Sz("File3", "C:\\b")}, false},
      {"Recent widths", {a, Sz("File02", "C:\\b")}, false},
      {"Recent lone", {Sz("Item1", "C:\\a")}, false},
      {"Recent zeros", {a, b, Sz("File02", "C:\\b")}, false},
      {"Recent large", {a, Sz("File9999999999", "C:\\b")}, false},
      {"Recent long",
       {Sz(std::string(256, 'F') + "1", "C:\\a"), Sz(std::string(256, 'F') + "2", "C:\\b")},
       false},
      // There is something else.
      {"LastSettings", {Sz("LastDir", "C:\\a")}, false},
      {"Recent default", {a, b, Sz("", "C:\\a")}, false},
      {"Recent mode", {a, b, Number("Mode", 2)}, false},
      {"Recent account", {a, b, Number("Account", 2)}, false},
      {"Recent wrong", {a, b, Number("Count", 3)}, false},
      {"Recent twice", {a, b, Number("Count", 2), Number("Total", 2)}, false},
  };
  std::set<Text> wanted;
  for (const Case& c : cases) {
    Make(c.key, c.values);
    if (c.isList) wanted.insert(testing::Utf16("TorvaneTest\\" + c.key));
  }
  std::set<Text> found;
  for (const FoundList& list : Found()) found.insert(list.key);
  EXPECT_EQ(found, wanted);
}

TEST_F(FindingTest, KeepsNamesTypesAndDataAndAllElse) {
  const std::string there = MakeFile("Here.TXT");
  Make("Recent", {Number("mruCount", 3),
                  Sz("mruFile01", "C:\\Gone.TXT"),
                  Sz("mruFile00", there + "\\", 2),
                  {"mruFile02", 1, "\\\\Srv\\Pub\\No NUL"}});
  // Some systems close a text that has no NUL.
  const std::string bare = Data("Recent", "mruFile02");
  const auto lists = Found();
  ASSERT_EQ(lists.size(), 1U);
  EXPECT_EQ(lists[0].Tip(), u"HKEY_CURRENT_USER\\Software\\TorvaneTest\\Recent");
  Make("Recent", {Sz("Colour", "blue"), Sz("mruFile40", "C:\\Behind")});
  Show(lists[0]);
  ASSERT_EQ(list_.ListItems().Count(), 3);
  EXPECT_EQ(list_.ListItems()(1).Text(), u"here.txt");
  Tree tree{form_, u"Programs"};
  UndoStore undo;
  const auto before = Values(kBase + "\\Recent"s);
  list_.ListItems()(2).Selected(true);
  DeleteSelectedEntries({list_, status_, tree, undo});
  EXPECT_EQ(Data("Recent", "mruFile00"), there + "\\\0"s);
  EXPECT_EQ(Data("Recent", "mruFile01"), bare);
  EXPECT_EQ(Data("Recent", "mruFile02"), "absent");
  EXPECT_EQ(Data("Recent", "mruCount"), "\2\0\0\0"s);
  EXPECT_EQ(Data("Recent", "Colour"), "blue\0"s);
  EXPECT_EQ(Data("Recent", "mruFile40"), "C:\\Behind\0"s);
  UndoDelete({list_, status_, tree, undo});
  EXPECT_EQ(Values(kBase + "\\Recent"s), before);
  DeleteAllEntries({list_, status_, tree, undo});
  EXPECT_EQ(Values(kBase + "\\Recent"s).size(), 3U);
  EXPECT_EQ(Data("Recent", "mruCount"), "\0\0\0\0"s);
}

TEST_F(FindingTest, NumbersAllFormsWithoutGapsAndTakesItBack) {
  struct Case {
    std::string prefix;
    int first;
    std::size_t digits;
    unsigned countType;
  };
  const Case cases[] = {
      {"File", 1, 1, 0}, {"File", 0, 1, 4}, {"", 1, 1, 1}, {"mru ", 0, 2, 1}, {"Last", 1, 2, 4}};
  // Two digits become three.
  constexpr int kEntries = 102;
  const std::string there = MakeFile("Here.TXT");
  for (const Case& c : cases) {
    const std::string key = "Recent " + c.prefix + std::to_string(c.first) + "x";
    SCOPED_TRACE(key);
    const auto name = [&](int n) {
      std::string number = std::to_string(c.first + n);
      return c.prefix + std::string(c.digits - std::min(c.digits, number.size()), '0') + number;
    };
    const auto count = [&](int n) {
      return c.countType == 4 ? Number("Count", static_cast<char>(n))
                              : Sz("Count", std::to_string(n), 1);
    };
    std::vector<Raw> before;
    std::vector<Raw> after;
    for (int n = 0; n < kEntries; ++n) {
      const bool stays = n % 3 == 1;
      const unsigned type = n % 2 == 0 ? 1 : 2;
      before.push_back(Sz(name(n), stays ? there : "C:\\Gone\\" + name(n), type));
      if (!stays) continue;
      after.push_back(before.back());
      after.back().name = name(static_cast<int>(after.size()) - 1);
    }
    if (c.countType != 0) before.push_back(count(kEntries));
    if (c.countType != 0) after.push_back(count(kEntries / 3));
    Make(key, before);
    const KeyStore store(testing::Utf16(kBase + ("\\" + key)));
    const StorePicture stored = store.Read();
    auto lists = Found();
    std::erase_if(lists, [&](const FoundList& list) {
      return list.key != testing::Utf16("TorvaneTest\\" + key);
    });
    ASSERT_EQ(lists.size(), 1U);
    Show(lists[0]);
    Tree tree{form_, u"Programs"};
    UndoStore undo;
    DeleteMissingEntries({list_, status_, tree, undo});
    const StorePicture left = store.Read();
    ASSERT_EQ(left.values.size(), after.size());
    for (const Raw& value : after) {
      const auto found = NameIndex(left).Find(testing::Utf16(value.name));
      ASSERT_TRUE(found) << value.name;
      EXPECT_EQ(left.values[*found].type, static_cast<std::int32_t>(value.type)) << value.name;
      EXPECT_EQ(Data(key, value.name), value.data) << value.name;
    }
    UndoDelete({list_, status_, tree, undo});
    EXPECT_TRUE(SameContent(store.Read(), stored));
  }
}

TEST_F(FindingTest, PassesOverAKeyThatWouldHoldItUp) {
  std::vector<Raw> many;
  for (int n = 1; n <= 5000; ++n) many.push_back(Sz("File" + std::to_string(n), "C:\\a"));
  Make("Recent", many);
  EXPECT_TRUE(Found().empty());
  for (int n = 4001; n <= 5000; ++n) {
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_CURRENT_USER, Wide(u"Software\\TorvaneTest\\Recent"), 0, KEY_SET_VALUE,
                  &key);
    RegDeleteValueW(key, Wide(u"File" + Decimal(n)));
    RegCloseKey(key);
  }
  EXPECT_EQ(Found().size(), 1U);
}

TEST_F(FindingTest, ReadsOfficesItems) {
  const auto item = ReadOfficeItem(u"[F00000001][T01DA6F0E5C4B2A00][O00000000]*C:\\x]*y.docx");
  ASSERT_TRUE(item);
  EXPECT_TRUE(item->isPinned);
  EXPECT_EQ(item->time, 0x01DA6F0E5C4B2A00U);
  EXPECT_EQ(item->path, u"C:\\x]*y.docx");
  for (const TextView bad : {u"C:\\a", u"[F0000000G]*C:\\a", u"[T0]*C:\\a", u"[F0]C:\\a", u"[F0]*",
                             u"[F0", u"[F]*C:\\a", u"[]*C:\\a"}) {
    EXPECT_FALSE(ReadOfficeItem(bad)) << Utf8(bad);
  }
  EXPECT_EQ(LocalTimeText(0), u"");
  EXPECT_EQ(LocalTimeText(0x01DA6F0E5C4B2A00).substr(0, 8), u"2024-03-");
  for (const TextView key : {u"Microsoft\\Office\\16.0\\Word\\File MRU",
                             u"microsoft\\office\\12.0\\Excel\\User MRU\\ADAL_1\\Place MRU"}) {
    EXPECT_TRUE(IsOfficeKey(key)) << Utf8(key);
  }
  for (const TextView key : {u"Microsoft\\Office\\Word\\x\\File MRU", u"Office\\File MRU",
                             u"Microsoft\\Office\\16.0\\Word\\Other\\File MRU"}) {
    EXPECT_FALSE(IsOfficeKey(key)) << Utf8(key);
  }
}

TEST_F(FindingTest, KeepsPinnedEntriesAndWhatStandsBeforeThePath) {
  const std::string there = MakeFile("Plan.docx");
  const std::string lead = "[F00000000][T01DA6F0E5C4B2A00][O00000000]*";
  const std::string pinned = "[F00000001][T0000000000000000][O00000000]*Q:\\Gone\\Pin.docx";
  const auto key = "Software\\Microsoft\\Office\\99.0\\TorvaneTest\\File MRU";
  MakeKey(key, {{"Item 1", lead + "C:\\Gone\\Old.docx"},
                {"Item 2", pinned},
                {"Item 3", lead + "https://d.example/Web.docx"},
                {"Item 4", lead + there},
                {"Note", "kept"}});
  const auto lists = Found();
  ASSERT_EQ(lists.size(), 1U);
  EXPECT_EQ(lists[0].description.entry.EntryName, u"TorvaneTest");
  Show(lists[0]);
  ASSERT_EQ(list_.ColumnHeaders().Count(), 3);
  EXPECT_EQ(list_.ListItems()(2).Text(), u"pin.docx");
  EXPECT_EQ(list_.ListItems()(2).SubItems(1), u"q:\\gone");
  EXPECT_EQ(list_.ListItems()(2).SubItems(2), u"pinned");
  EXPECT_EQ(list_.ListItems()(2).ImageNote(), u"Missing: its drive or server can't be reached");
  EXPECT_EQ(list_.ListItems()(4).SubItems(2), LocalTimeText(0x01DA6F0E5C4B2A00));
  EXPECT_EQ(Counters().MissingCount, 1);
  Tree tree{form_, u"Programs"};
  UndoStore undo;
  const auto before = Values(key);
  DeleteMissingEntries({list_, status_, tree, undo});
  const std::map<std::string, std::string> left = {{"Item 1", pinned},
                                                   {"Item 2", lead + "https://d.example/Web.docx"},
                                                   {"Item 3", lead + there},
                                                   {"Note", "kept"}};
  EXPECT_EQ(Texts(key), left);
  UndoDelete({list_, status_, tree, undo});
  EXPECT_EQ(Values(key), before);
  for (int n = 1; n <= 4; ++n) list_.ListItems()(n).Selected(n != 3);
  DeleteSelectedEntries({list_, status_, tree, undo});
  const std::map<std::string, std::string> chosen = {
      {"Item 1", lead + "https://d.example/Web.docx"}, {"Note", "kept"}};
  EXPECT_EQ(Texts(key), chosen);
}

TEST_F(FindingTest, NamesListsByTheirPrograms) {
  std::vector<FoundList> lists;
  for (const TextView key :
       {u"Quay\\Notes\\2.1\\Settings\\Recent File List", u"Lone\\RecentFiles", u"Quay\\Draw\\MRU",
        u"Bay\\Draw\\v3\\MRU", u"Quay\\Plan\\Recent Files", u"Quay\\Plan\\Recent Folders",
        u"Microsoft\\Windows\\CurrentVersion\\Applets\\Wordpad\\Recent File List",
        u"Microsoft\\Windows\\CurrentVersion\\Explorer\\TypedPaths",
        u"Microsoft\\Office\\9.0\\Word\\File MRU", u"Microsoft\\Office\\8.0\\Word\\File MRU",
        u"Bay\\a\\b\\c\\d\\e\\MRU"}) {
    lists.push_back({Text(key), {}});
  }
  NameLists(lists);
  std::vector<Text> names;
  for (const FoundList& list : lists) names.push_back(list.description.entry.EntryName);
  const std::vector<Text> wanted = {
      u"a b c d", u"Draw (Bay)",          u"Draw (Quay)",           u"Explorer",   u"Lone",
      u"Notes",   u"Plan (Recent Files)", u"Plan (Recent Folders)", u"Word (8.0)", u"Word (9.0)",
      u"Wordpad"};
  EXPECT_EQ(names, wanted);
}

TEST_F(FindingTest, ReadsTheUsersFileOrSaysWhyNot) {
  EXPECT_EQ(LeftOutMessage(ReadOwnLists()), u"");
  const auto file = UserFolder() / "lists.ini";
  std::filesystem::create_directories(UserFolder());
  std::ofstream(file) << "[Bay]\n1=Notes,Quay\\Notes,0,*,File,1,*,*,*\n";
  ASSERT_EQ(ReadOwnLists().rows.size(), 1U);
  std::filesystem::resize_file(file, kMostUserBytes + 1);
  const auto reason = [] {
    const OwnLists lists = ReadOwnLists();
    EXPECT_TRUE(lists.rows.empty());
    return lists.leftOut.size() == 1 ? Utf8(lists.leftOut[0].reason) : "none";
  };
  EXPECT_EQ(reason(), "the file is too large");
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  EXPECT_EQ(reason(), "the file can't be read");
}

TEST(OwnListsTest, TakesRowsThatCanBeRight) {
  OwnLists lists;
  AddOwnLists(
      u"a.ini",
      "; mine\r\n[Bay]\r\n1=Notes,Quay\\Notes,0,*,Note_,007,*,*,*\r\n[Cove]\n2 = Plan,"
      "plan.ini,23,Any Section,No,1,*,*,*\n[bay]\n1=Draw;Quay\\Draw;0;*;D;1;Count;D;d.exe\n",
      lists);
  AddOwnLists(u"b.ini",
              "\xFF\xFE[\0C\0o\0v\0e\0]\0\n\0x\0=\0\xC9\0,\0Q\0,\0"
              "5\0,\0*\0,\0*\0,\0*\0,\0*\0,\0*\0,\0*\0"s,
              lists);
  EXPECT_EQ(LeftOutMessage(lists), u"");
  std::vector<Text> rows;
  for (const CategoryRow& row : lists.rows)
    rows.push_back(row.category + u'/' + row.entry.EntryName);
  EXPECT_EQ(rows, (std::vector<Text>{u"Bay/Notes", u"bay/Draw", u"Cove/Plan", u"Cove/\u00C9"}));
  EXPECT_EQ(ListOfRow(lists.rows[0])->description.names.Numbered(4), u"Note_010");
  OwnLists returns;
  AddOwnLists(u"r", "[S]\r1=A,Q,5,*,*,*,*,*,*\r\r2=B,Q,5,*,*,*,*,*,*", returns);
  EXPECT_EQ(returns.rows.size(), 2U);
  OwnLists utf8;
  AddOwnLists(u"c", "\xEF\xBB\xBF[\xC3\x89]\n1=\xF0\x9F\x8E\xA8,Q,5,*,*,*,*,*,*", utf8);
  ASSERT_EQ(utf8.rows.size(), 1U);
  EXPECT_EQ(utf8.rows[0].category + utf8.rows[0].entry.EntryName, u"\u00C9\U0001F3A8");
}

TEST(OwnListsTest, TellsOfAllOthersAtOnce) {
  struct Case {
    std::string row;
    Text reason;
  };
  const Case cases[] = {
      {"1=A,Q,0,*,File,1,*,*", u"it has 8 fields in place of nine"},
      {"1=A", u"it has 1 fields in place of nine"},
      {"1=A,,0,*,File,1,*,*,*", u"Location is empty; * stands for none"},
      {"1=*,Q,0,*,File,1,*,*,*", u"the program has no name"},
      {"1=A,Q,00,*,File,1,*,*,*", u"'00' is no type of list"},
      {"1=A,Q,0,*,File,x,*,*,*", u"prefix 'File' and first number 'x' name no entries"},
      {"1=A,Q\\\\R,0,*,File,1,*,*,*", u"the key has a part without a name"},
      {"1=A,\\Q,0,*,File,1,*,*,*", u"the key has a part without a name"},
      {"1=A,Halvex\\Torvane\\Paths,5,*,*,*,*,*,*", u"the key is Torvane's own"},
      {"1=A,dir\\a.ini,20,S,File,1,*,*,*",
       u"'dir\\a.ini' is no name of an INI file without its folder"},
      {"1=A,a.ini,20,*,File,1,*,*,*", u"the INI file's section is missing"},
      {"1=A,Q,0,*,File\x01,1,*,*,*", u"it has a control character"},
      {"1=A,Q,0,*,\"F\",1,*,*,*", u"it has a double quote"},
      {"A,Q,0,*,File,1,*,*,*", u"it has no '='"},
      {"[  ]", u"this is no section with a name"},
      {"1=A,Q,0,*,File,1,*,*,*", u"it stands in no section"},
  };
  std::string text = "[S]";
  Text wanted = u"These rows of your own lists can't be right and have been left out:\r\n\r\nlists";
  int line = 1;
  for (const Case& c : cases) {
    text += "\n" + c.row;
    wanted +=
        u"\r\nline" + Text(line == 7 ? u"s 8-9" : u" " + Decimal(line + 1)) + u": " + c.reason;
    if (++line == 9) wanted.erase(wanted.rfind(u"\r\n"));
  }
  OwnLists lists;
  AddOwnLists(u"lists", text, lists);
  EXPECT_EQ(Utf8(LeftOutMessage(lists)), Utf8(wanted));
  OwnLists outside;
  AddOwnLists(u"x",
              "[S]\n1=A,HKEY_CURRENT_USER\\Console,0,*,F,1,*,*,*\n2=A,..\\Console,0,*,F,1,*,*,*\n"
              "3=A,Q,0,*,F,1,N,*,*\n4=A,Q,0,*,F,1,N,X,*",
              outside);
  ASSERT_EQ(outside.leftOut.size(), 4U);
  OwnLists twice;
  AddOwnLists(u"x", "[S]\n1=A,Q,5,*,*,*,*,*,*\n2=a,R,5,*,*,*,*,*,*\n[T]\n1=A,Q,5,*,*,*,*,*,*",
              twice);
  ASSERT_EQ(twice.leftOut.size(), 1U);
  EXPECT_EQ(twice.leftOut[0].line, 3);
  std::string rows = "[S]\n1=A,Q," + std::string(1 << 20, '9') + ",*,F,1,*,*,*";
  for (int n = 0; n < 50; ++n) rows += "\n1=A,Q,x" + std::to_string(n) + ",*,F,1,*,*,*";
  OwnLists wrong;
  AddOwnLists(u"x", rows, wrong);
  EXPECT_LT(LeftOutMessage(wrong).size(), 1000U);
  EXPECT_TRUE(LeftOutMessage(wrong).ends_with(u"more."));
  EXPECT_TRUE(outside.leftOut[0].reason.starts_with(u"the key lies outside Software"));
  EXPECT_EQ(outside.leftOut[1].reason, outside.leftOut[0].reason);
  EXPECT_TRUE(outside.leftOut[3].reason.starts_with(u"CountValue and CountKind"));
  EXPECT_EQ(CatalogueRows().size(), 97U);
}

}  // namespace
}  // namespace torvane
