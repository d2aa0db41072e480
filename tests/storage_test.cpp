#include <gtest/gtest.h>

#include "platform/winapi.h"
#include "storage/clsIni.h"
#include "storage/clsParse.h"
#include "storage/clsRegistry.h"
#include "storage/numeric_text.h"
#include "storage/paths.h"
#include "storage/raised_error.h"
#include "support/printing.h"
#include "support/scratch_world.h"

namespace torvane {
namespace {

using testing::ScratchWorld;

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
  ini.Path(FromAnsi(MakeFile("a.ini", "[List]\r\na=1\r\nb=2\r\nlong=" + std::string(300, 'x') +
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
    registry_.SectionKey(FromAnsi(kKey));
  }
  void Stored(const std::string& name, unsigned type, std::string_view bytes) {
    SetValue(kKey, name, type, bytes);
    registry_.ValueKey(FromAnsi(name));
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
      {1, Text(u"\u00E4"), "1:\xE4\0"s},
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
    const auto stored = registry_.Stored();
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

TEST_F(clsRegistryTest, KeepsStoredBytesAsTheyAre) {
  using namespace std::string_view_literals;
  Stored("a", REG_EXPAND_SZ, "%TEMP%\\\xE9\0"sv);
  const auto stored = registry_.Stored();
  registry_.ValueKey(u"b");
  EXPECT_FALSE(registry_.Stored());
  registry_.Stored(stored.value());
  EXPECT_EQ(registry_.Stored()->type, 2);
  EXPECT_EQ(Values(kKey)["b"], "%TEMP%\\\xE9\0"sv);
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
  const Text folder = FromAnsi(Folder());
  EXPECT_EQ(GetLongPath(LowerCase(folder) + u"\\SUB FOLDER\\read me.txt"),
            LowerCase(folder.substr(0, 1)) + folder.substr(1) + u"\\Sub Folder\\Read Me.TXT");
  EXPECT_EQ(GetLongPath(folder + u"\\none\\x.txt"), folder + u"\\none\\x.txt\\");
  EXPECT_EQ(GetLongPath(u"\\\\server\\share\\a"), u"\\\\server\\share\\a\\");
  EXPECT_EQ(GetLongPath(u"C:\\"), u"C:");
  EXPECT_EQ(GetLongPath(u"ab"), u"ab");
  EXPECT_EQ(GetLongPath(u"torvane-none.txt"), u"torvane-none.txt\\");
}

TEST_F(PathsTest, FindsFilesAndFolders) {
  const Text file = FromAnsi(MakeFile("a.txt"));
  EXPECT_TRUE(FileExists(file));
  EXPECT_TRUE(FileExists(FromAnsi(Folder()) + u"\\*.txt"));
  EXPECT_FALSE(FileExists(file + u"x"));
  Text folder = u"  " + FromAnsi(Folder()) + u"\\ ";
  EXPECT_TRUE(FolderExists(folder));
  EXPECT_EQ(folder, FromAnsi(Folder()));
  Text noFolder = file;
  EXPECT_FALSE(FolderExists(noFolder));
  EXPECT_EQ(GetSystemDrive().substr(1), u":\\");
  EXPECT_TRUE(FileExists(GetWindowsFolder()));
}

}  // namespace
}  // namespace torvane
