#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "platform/winapi.h"
#include "storage/clsIni.h"
#include "storage/clsParse.h"
#include "storage/clsRegistry.h"
#include "storage/numeric_text.h"
#include "storage/paths.h"
#include "storage/raised_error.h"
#include "support/hostile_values.h"
#include "support/printing.h"
#include "support/scratch_world.h"

namespace torvane {
namespace {

using testing::ScratchWorld;
using testing::Utf16;

TEST(clsParseTest, SplitsAtSeparatorsAndProtectsThemInQuotes) {
  struct Case {
    Text source;
    Text separators;
    int count;
    std::vector<Text> elements;
  };
  const Case cases[] = {
      {u"", u",", 1, {u""}},
      {u",", u",", 2, {u"", u""}},
      {u",a,,b,", u",", 5, {u"", u"a", u"", u"b", u""}},
      {u"a;b,c", u",;", 3, {u"a", u"b", u"c"}},
      {u"a,b", u"", 1, {u"a,b"}},
      {u"\"a,b\",c", u",", 2, {u"\"a,b\"", u"c"}},
      {u"\"a\"\"b\",c", u",", 2, {u"\"a\"\"b\"", u"c"}},
      {u"ab\"c,d", u",", 1, {u"ab\"c,d"}},
      {u"\"ab\"c,d", u",", 0, {u""}},
      {u"x,\"ab\" ,c", u",", 0, {u"x", u""}},
      {u"a\"b\"c", u"\"", 3, {u"a", u"b", u"c"}},
  };
  clsParse parser;
  parser.Initialise(u"1,2,3,4,5,6,7", u",");
  for (const Case& c : cases) {
    EXPECT_EQ(parser.Initialise(c.source, c.separators), c.count) << c.source;
    for (std::size_t i = 0; i < c.elements.size(); ++i) {
      EXPECT_EQ(parser.ElementAsString(static_cast<int>(i) + 1), c.elements[i]) << c.source;
    }
    for (const int outside : {-1, 0, static_cast<int>(c.elements.size()) + 1}) {
      EXPECT_EQ(parser.ElementAsString(outside), u"") << c.source;
    }
  }
  EXPECT_EQ(parser.Initialise(Text(25, u','), u","), 26);
}

class IniFileTest : public ScratchWorld {};

TEST_F(IniFileTest, TheUsersOwnCopyOfAProtectedFileIsTheFile) {
  Text local(MAX_PATH, u'\0');
  ExpandEnvironmentStringsW(Wide(u"%LOCALAPPDATA%"), WideBuffer(local), MAX_PATH);
  const Text copies = StripAtNull(local) + u"\\VirtualStore\\";
  const std::filesystem::path store = Host(ToAnsi(copies));
  std::filesystem::create_directories(store / "Windows");
  std::filesystem::create_directories(store / "Program Files" / "Old");
  std::ofstream(store / "Windows" / "old.ini") << "[a]";
  std::ofstream(store / "Program Files" / "Old" / "old.ini") << "[a]";
  const std::pair<Text, Text> rows[] = {
      {u"C:\\WINDOWS\\Old.ini", copies + u"WINDOWS\\Old.ini"},
      {u"old.ini", copies + LowerCase(GetWindowsFolder()).substr(3) + u"\\old.ini"},
      {u"c:\\Program Files\\Old\\old.ini", copies + u"Program Files\\Old\\old.ini"},
      {u"C:\\Program Files\\Old\\other.ini", u"C:\\Program Files\\Old\\other.ini"},
      {u"D:\\Windows\\old.ini", u"D:\\Windows\\old.ini"},
      {u"other.ini", u"other.ini"},
  };
  for (const auto& [asked, used] : rows) {
    EXPECT_EQ(LowerCase(IniFileInUse(asked)), LowerCase(used)) << asked;
  }
  std::filesystem::remove_all(store);
}

TEST(NumericTextTest, RecognisesNumbersAsTheListsDo) {
  const Text numbers[] = {u"0",   u" 12 ", u"-5",  u"5-",   u"+.5",  u"1,234.50", u"1e5", u"1D-3",
                          u"$12", u"(3)",  u"12$", u"&HFf", u"&o17", u"-$ 3",     u"5."};
  for (const Text& text : numbers) EXPECT_TRUE(ReadsAsNumber(text)) << text;
  const Text others[] = {u"",    u" ",  u"c:\\1", u"1e", u".",    u"--1", u"&H",   u"&H8G",
                         u"1 2", u",1", u"1..2",  u"()", u"1e5.", u"e5",  u"0x10", u"$"};
  for (const Text& text : others) EXPECT_FALSE(ReadsAsNumber(text)) << text;
}

class clsIniTest : public ScratchWorld {};

TEST_F(clsIniTest, ReadsWritesAndDeletes) {
  clsIni ini;
  ini.Path(Utf16(MakeFile("a.ini", "[List]\r\na=1\r\nb=2\r\nlong=" + std::string(300, 'x') +
                                       "\r\n[Other]\r\nc=3\r\n")));
  ini.Section(u"List");
  ini.Key(u"long");
  EXPECT_EQ(ini.Value(), Text(254, u'x')) << "cut at its buffer";
  ini.DeleteKey();
  EXPECT_EQ(ini.Value(), u"");
  ini.DeleteKey();
  ini.Key(u"b");
  Text value(u"x\0y\0z", 5);
  ini.Value(value);
  EXPECT_EQ(value, u"xyz");
  EXPECT_EQ(ini.Value(), u"xyz");
  std::vector<Text> names;
  std::int32_t count = -1;
  ini.EnumerateCurrentSection(names, count);
  EXPECT_EQ(names, (std::vector<Text>{u"a", u"b"}));
  ini.DeleteSection();
  ini.EnumerateCurrentSection(names, count);
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(names.empty());
  ini.EnumerateAllSections(names, count);
  EXPECT_EQ(names, std::vector<Text>{u"Other"});
}

class clsRegistryTest : public ScratchWorld {
 protected:
  static constexpr auto kKey = "software\\TorvaneTest\\Registry";

  clsRegistryTest() {
    UseKey(kKey);
    registry_.ClassKey(kCurrentUser);
    registry_.SectionKey(Utf16(kKey));
  }
  void Stored(const std::string& name, unsigned type, std::string_view bytes) {
    SetValue(kKey, name, type, bytes);
    registry_.ValueKey(Utf16(name));
  }
  clsRegistry registry_;
};

TEST_F(clsRegistryTest, ReadsByStoredTypeAndTakesTheTypeOver) {
  using namespace std::string_view_literals;
  struct Case {
    unsigned type;
    std::string_view bytes;
    Variant value;
  };
  const Case cases[] = {
      {REG_SZ, "abc\0"sv, Text(u"abc")},
      {REG_SZ, "ab\u65E5"sv, Text(u"ab\u65E5")},
      {REG_EXPAND_SZ, "\u0416"sv, Text(u"\u0416")},
      {REG_SZ, "\0"sv, Text()},
      {REG_SZ, ""sv, std::monostate()},
      {REG_EXPAND_SZ, ""sv, std::monostate()},
      {REG_MULTI_SZ, "a\0b\0\0"sv, Text(u"a\0b\0", 4)},
      {REG_EXPAND_SZ, "%TorvaneNoSuchName%\\x\0"sv, Text(u"%TorvaneNoSuchName%\\x")},
      {REG_DWORD, "\x01\x02\0\x80"sv, static_cast<std::int32_t>(0x80000201)},
      {REG_DWORD_BIG_ENDIAN, "\x80\0\x02\x01"sv, static_cast<std::int32_t>(0x80000201)},
      {REG_BINARY, "\x01\xFF"sv, Bytes{std::byte{1}, std::byte{255}, std::byte{0}}},
      {REG_NONE, ""sv, Bytes{std::byte{0}}},
      {77, "\x05"sv, Bytes{std::byte{5}, std::byte{0}}},
  };
  for (const Case& c : cases) {
    Stored("v", c.type, c.bytes);
    EXPECT_EQ(registry_.Value(), c.value) << "type " << c.type << ", " << c.bytes.size();
  }
  // The last read left a type that nothing can be written under.
  EXPECT_THROW(registry_.Value(Text(u"x")), RaisedError);
}

TEST_F(clsRegistryTest, GivesTheDefaultForWhatIsNotThere) {
  registry_.ValueKey(u"none");
  EXPECT_EQ(registry_.Value(), Variant());
  EXPECT_FALSE(registry_.KeyExists());
  std::vector<Text> names{u"old"};
  std::int32_t count = 7;
  EXPECT_TRUE(registry_.EnumerateValues(names, count));
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(names.empty());
  EXPECT_TRUE(registry_.CreateKey());
  EXPECT_TRUE(registry_.KeyExists());
  registry_.Default(std::int32_t{5});
  EXPECT_EQ(registry_.Value(), Variant(std::int32_t{5}));
}

TEST_F(clsRegistryTest, WritesByValueType) {
  using namespace std::string_literals;
  struct Case {
    std::int32_t type;
    Variant value;
    std::string stored;  // type digit, then the bytes
  };
  const Case cases[] = {
      {1, Text(u"50%%"), "1:50%%\0"s},
      {1, Text(u"a%b"), "1:a%b\0"s},
      {1, Text(u"%TEMP%\\x"), "2:%TEMP%\\x\0"s},
      {1, Text(), "1:\0"s},
      {2, std::int32_t{-3}, "1:-3\0"s},
      {1, Text(u"\u00E4\u0416"), "1:\u00E4\u0416\0"s},
      {4, std::int32_t{258}, "4:\x02\x01\0\0"s},
      {5, std::int16_t{1}, "4:\x01\0\0\0"s},
      {4, Text(u"12"), ""},
      {3, Bytes{std::byte{9}, std::byte{0}}, "3:\x09"s},
  };
  for (const Case& c : cases) {
    UseKey(kKey);
    registry_.ValueKey(u"v");
    registry_.ValueType(c.type);
    registry_.Value(c.value);
    const auto stored = registry_.Data();
    const std::string digit = stored ? std::to_string(stored->type) + ":" : "";
    EXPECT_EQ(digit + Values(kKey)["v"], c.stored);
  }
}

TEST_F(clsRegistryTest, RaisesWithNumberSourceAndDescription) {
  registry_.ValueKey(u"File1");
  const auto raised = [](auto&& operation) {
    try {
      operation();
    } catch (const RaisedError& error) {
      return error;
    }
    return RaisedError(0, u"", u"nothing was raised");
  };
  const RaisedError noKey = raised([&] { registry_.DeleteValue(); });
  EXPECT_EQ(noKey.Number(), 26001);
  EXPECT_TRUE(noKey.Source().ends_with(u".cRegistry"));
  EXPECT_EQ(
      noKey.Description(),
      u"Failed to open key '-2147483647',Section: 'software\\TorvaneTest\\Registry' for delete "
      u"access");
  registry_.CreateKey();
  EXPECT_EQ(raised([&] { registry_.DeleteValue(); }).Description(),
            u"Failed to delete registry Key: "
            u"'-2147483647',Section: 'software\\TorvaneTest\\Registry',Key: 'File1");
  registry_.ValueType(7);
  const RaisedError badType = raised([&] { registry_.Value(Text(u"x")); });
  EXPECT_EQ(badType.Number(), -2147194455);
  EXPECT_EQ(badType.Description(),
            u"Failed to set registry value Key: '-2147483647',Section: "
            u"'software\\TorvaneTest\\Registry',Key: 'File1' to value: 'x'");
  registry_.ValueType(3);
  EXPECT_EQ(raised([&] { registry_.Value(Text(u"x")); }).Description(), u"");
}

TEST_F(clsRegistryTest, KeepsDataAsItIs) {
  registry_.ValueKey(u"v\u65E5");
  EXPECT_FALSE(registry_.Data());
  for (const auto& [what, type, bytes] : testing::HostileDataTable()) {
    TypedData stored{static_cast<std::int32_t>(type), Bytes(bytes.size())};
    std::ranges::transform(bytes, stored.bytes.begin(),
                           [](char byte) { return static_cast<std::byte>(byte); });
    registry_.Data(stored);
    EXPECT_EQ(registry_.Data().value().type, stored.type) << what;
    EXPECT_EQ(registry_.Data().value().bytes, stored.bytes) << what;
  }
  registry_.Data({1, {std::byte{0x3D}, std::byte{0xD8}, std::byte{'x'}}});
  EXPECT_EQ(registry_.Value(), Variant(Text(1, char16_t{0xD83D}))) << "half a pair, half a unit";
}

class PathsTest : public ScratchWorld {};

TEST_F(PathsTest, AddsAndRemovesBackslashes) {
  EXPECT_EQ(AddBackslash(u""), u"\\");
  EXPECT_EQ(AddBackslash(u"a\\"), u"a\\");
  struct Case {
    Text path;
    Text without;
  };
  const Case cases[] = {{u"", u""},         {u"\\", u""},
                        {u"   ", u""},      {u" c:\\a\\  ", u"c:\\a"},
                        {u"a\\\\", u"a\\"}, {u"c:\\", u"c:"}};
  for (const Case& c : cases) EXPECT_EQ(RemoveBackslash(c.path), c.without) << c.path;
}

TEST_F(PathsTest, GivesPathsTheFormTheyHaveOnDisk) {
  MakeFile("Sub Folder\\Read Me.TXT");
  const Text folder = Utf16(Folder());
  EXPECT_EQ(GetLongPath(LowerCase(folder) + u"\\SUB FOLDER\\read me.txt"),
            LowerCase(folder.substr(0, 1)) + folder.substr(1) + u"\\Sub Folder\\Read Me.TXT");
  EXPECT_EQ(GetLongPath(u"C:\\"), u"C:");
  MakeFile("\uFFFDx");
  // All but the path of one existing drive entry come back whole.
  MakeFile("a.txt");
  const Text whole[] = {folder + u"\\" + char16_t{0xD83D} + u"x",
                        folder + u"\\none\\x.txt",
                        folder + u"/a.txt",
                        LowerCase(folder.substr(0, 2)) + u"/" + folder.substr(3) + u"/a.txt",
                        folder.substr(2) + u"\\a.txt",
                        folder + u"\\.\\a.txt",
                        folder + u"\\Sub Folder\\..\\a.txt",
                        folder + u"\\Sub Folder\\\\Read Me.TXT",
                        folder + u"\\Sub Folder.\\Read Me.TXT",
                        folder + u"\\a.txt ",
                        folder + u"\\*",
                        folder + u"\\S*\\Read Me.TXT",
                        folder + u"\\a.tx?",
                        folder + u"\\a.tx<",
                        u"\\\\server\\share\\a",
                        u"\\\\?\\" + folder + u"\\a.txt",
                        u"C:windows",
                        u"windows",
                        u"ab",
                        u"\u65E5:\\a"};
  for (const Text& path : whole) EXPECT_EQ(GetLongPath(path), path + u"\\") << path;
}

TEST_F(PathsTest, NoPathIsTooLong) {
  std::string path = Folder();
  for (int part = 0; part < 5; ++part) path += "\\" + std::string(70, 'f');
  std::filesystem::create_directories(Host(path));
  std::ofstream(Host(path + "\\Some File.TXT")).put('x');
  const Text stored = Utf16(path + "\\SOME FILE.txt");
  EXPECT_TRUE(FileExists(stored));
  EXPECT_TRUE(FileExists(Utf16(path + "/../" + path.substr(path.size() - 70) + "\\some*.txt")));
  EXPECT_FALSE(FileExists(stored + u"x"));
  // What falls out of a path leaves one that can be found, and takes no time by its square.
  Text detour = Utf16(path);
  for (int n = 0; n < 100'000; ++n) detour += n % 2 == 0 ? u"\\.\\\\x" : u"/..";
  EXPECT_TRUE(FileExists(detour + u"\\some*.txt"));
  EXPECT_FALSE(FileExists(detour + u"\\other*.txt"));
  EXPECT_EQ(GetLongPath(stored), Utf16(path + "\\Some File.TXT"));
}

TEST_F(PathsTest, FindsFilesAndFolders) {
  const Text file = Utf16(MakeFile("a.txt"));
  EXPECT_TRUE(FileExists(file));
  EXPECT_TRUE(FileExists(Utf16(Folder()) + u"\\*.txt"));
  EXPECT_FALSE(FileExists(file + u"x"));
  Text folder = u"  " + Utf16(Folder()) + u"\\ ";
  EXPECT_TRUE(FolderExists(folder));
  EXPECT_EQ(folder, Utf16(Folder()));
  Text noFolder = file;
  EXPECT_FALSE(FolderExists(noFolder));
  EXPECT_EQ(GetSystemDrive().substr(1), u":\\");
  EXPECT_TRUE(FileExists(GetWindowsFolder()));
}

}  // namespace
}  // namespace torvane
