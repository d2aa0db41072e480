// What the layer promises of the hive files themselves: that they are read as Wine means them and
// written as Wine would, and that nothing but the changed key is touched.
#include <cstring>
#include <ctime>
#include <functional>
#include <regex>
#include <string>
#include <vector>

#include "platform/posix/disk/forget.h"
#include "platform/posix/registry/hive_format.h"
#include "platform/posix/registry/hive_image.h"
#include "platform/posix/registry/registry.h"
#include "posix/hive_world.h"
#include "support/hostile_values.h"

namespace torvane::testing {
namespace {

using posix::HiveImage;

class HiveTest : public HiveWorld {};

constexpr const char* kOddHive =
    "[Software\\\\A] 1700000000\n#time=1da1747c7059680\n#class=\"c\\\"l\"\n#future=x\n; mine\n"
    "@=\"d\"\n\"b\"=hex:01,02,\\\n  03\n\n\n"
    "[software\\\\a\\\\B]\n  \"spaced\" = \"x\"  \n\"t\"=str(2):\"%x%\"\n"
    "\"m\"=str(7):\"a\\0b\\0\"\n\"h\"=hex(ffff1234):\n\"cr\"=dword:1\r\n\n"
    "[SOFTWARE\\\\a] 17\n\"again\"=\"y\"\n\n[] 1\n\"root\"=\"r\"\n";

TEST_F(HiveTest, LoadingAndSavingGivesTheSameBytes) {
  std::vector<std::string> hives = {kHeader, kHeader + "\n" + kOddHive};
  const auto samples = std::filesystem::path(TORVANE_SOURCE_FOLDER) / "samples";
  for (const auto& entry : std::filesystem::recursive_directory_iterator(samples))
    if (entry.path().extension() == ".reg") hives.push_back(Read(entry.path()));
  ASSERT_GT(hives.size(), 2U);
  for (const std::string& hive : hives) {
    Write(Prefix() / "a.reg", hive);
    const HiveImage image(posix::ReadWholeFile(Prefix() / "a.reg"), {});
    EXPECT_EQ(image.problem(), "");
    posix::FileReplacement copy(posix::ResolveTarget(Prefix() / "copy.reg"));
    image.write(image.render(posix::HiveTimeNow()), copy);
    copy.commit();
    EXPECT_EQ(Read(Prefix() / "copy.reg"), hive);
  }
}

/// The hive with every time that isn't the one of these tests replaced by NOW.
std::string WithoutNewTimes(std::string hive) {
  hive = std::regex_replace(hive, std::regex("\\] (?!1700000000\n)[0-9]{10}"), "] NOW");
  return std::regex_replace(hive, std::regex("#time=(?!1da1747c7059680\n)[0-9a-f]+\n"),
                            "#time=NOW\n");
}

TEST_F(HiveTest, ChangesOnlyTheLinesOfItsOwnKey) {
  const std::string old = "] 1700000000\n#time=1da1747c7059680\n";
  const std::string now = "] NOW\n#time=NOW\n";
  const std::string others = "\n[Software\\\\Z" + old + "\"z\"=\"z\"\n";
  const std::string k = "\n[Software\\\\K";
  const struct {
    const char* what;
    std::string before;
    std::function<void()> change;
    std::string after;
  } cases[] = {
      {"a value is set", k + old + "\"a\"=\"1\"\n\"b\"=hex:01,\\\n  02\n" + others,
       [] { Set("Software\\K", "A", "2"); },
       k + now + "\"a\"=\"2\"\n\"b\"=hex:01,\\\n  02\n" + others},
      {"a value is deleted", k + old + "\"a\"=hex:01,\\\n  02\n\"b\" = \"2\"\n" + others,
       [] { Delete("software\\k", "a"); }, k + now + "\"b\" = \"2\"\n" + others},
      {"the last value is deleted", k + old + "\"a\"=\"1\"\n" + others,
       [] { Delete("Software\\K", "a"); }, k + now + others},
      {"deleted and set again", k + old + "\"a\"=\"1\"\n\"b\"=\"2\"\n" + others,
       [] { Delete("Software\\K", "a"), Set("Software\\K", "a", "3"); },
       k + now + "\"b\"=\"2\"\n\"a\"=\"3\"\n" + others},
      {"a new value goes behind the last", k + old + "; c\n\"a\"=\"1\"\n; d\n" + others,
       [] { Set("Software\\K", "n", "2"); },
       k + now + "; c\n\"a\"=\"1\"\n\"n\"=\"2\"\n; d\n" + others},
      {"or behind the options", k + old + "#future=1\n" + others,
       [] { Set("Software\\K", "", "2"); }, k + now + "#future=1\n@=\"2\"\n" + others},
      {"a key without times gets none", k + "]\n\"a\"=\"1\"\n" + others,
       [] { Set("Software\\K", "a", "2"); }, k + "]\n\"a\"=\"2\"\n" + others},
      {"a new key goes to the end", others, [] { Set("Software\\New\\K", "a", "1"); },
       others + "\n[Software\\\\New\\\\K" + now + "\"a\"=\"1\"\n"},
      {"so does one that was implied", k + "\\\\Below" + old + others,
       [] { Set("Software\\K", "a", "1"); },
       k + "\\\\Below" + old + others + k + now + "\"a\"=\"1\"\n"},
      {"a value that stands there twice",
       k + old + "\"a\"=\"1\"\n\"b\"=\"2\"\n\"A\"=\"3\"\n" + others,
       [] { Set("Software\\K", "a", *Get("Software\\K", "a") == "3\0"s ? "4" : "lost"); },
       k + now + "\"a\"=\"4\"\n\"b\"=\"2\"\n" + others},
      {"and is deleted", k + old + "\"a\"=\"1\"\n\"b\"=\"2\"\n\"A\"=\"3\"\n" + others,
       [] { Delete("Software\\K", "a"); }, k + now + "\"b\"=\"2\"\n" + others},
      {"a key that stands there twice",
       k + old + "\"a\"=\"1\"\n" + others + k + "] 1700000001\n\"b\"=\"2\"\n",
       [] { Set("Software\\K", "c", "3"); },
       k + now + "\"a\"=\"1\"\n\"b\"=\"2\"\n\"c\"=\"3\"\n" + others + "\n"},
      {"the last line has no end", others + k + old + "\"a\"=\"1\"",
       [] { Set("Software\\K", "b", "2"); }, others + k + now + "\"a\"=\"1\"\n\"b\"=\"2\"\n"},
      {"nor has it one in another key", k + old + others + k + "\\\\L" + old + "\"l\"=dword:1",
       [] { Set("Software\\K", "b", "2"); },
       k + now + "\"b\"=\"2\"\n" + others + k + "\\\\L" + old + "\"l\"=dword:1"},
      {"nor before a new key", k + old + "\"a\"=\"1\"", [] { Set("N", "n", "1"); },
       k + old + "\"a\"=\"1\"\n[N" + now + "\"n\"=\"1\"\n"},
      {"what is behind the data goes with it",
       k + "] 1700000000 ; k\n#time=1da1747c7059680\n\"a\"=\"1\" ; a\n\"b\"=dword:1 ; b\n",
       [] { Set("Software\\K", "a", "2"); },
       k + "] NOW ; k\n#time=NOW\n\"a\"=\"2\"\n\"b\"=dword:1 ; b\n"},
      {"nothing is really changed", k + old + "\"a\"=\"1\"\n" + others,
       [] { EXPECT_EQ(Delete("Software\\K", "x"), ERROR_FILE_NOT_FOUND); },
       k + old + "\"a\"=\"1\"\n" + others},
  };
  for (const auto& [what, before, change, after] : cases) {
    SCOPED_TRACE(what);
    Replace(UserHive(), kHeader + before);
    change();
    EXPECT_EQ(Read(UserHive()), kHeader + before) << "nothing is written before its time";
    Save();
    EXPECT_EQ(WithoutNewTimes(Read(UserHive())), kHeader + after);
    Save();
    EXPECT_EQ(WithoutNewTimes(Read(UserHive())), kHeader + after);
  }
}

TEST_F(HiveTest, WritesTheLinesThatWineWrites) {
  const struct {
    std::string name;
    DWORD type;
    std::string bytes;
    std::string line;
  } cases[] = {
      {"", REG_SZ, "x\0"s, "@=\"x\""},
      {"a\"b\\c[d]", REG_SZ, "[e]\"f\\\0"s, "\"a\\\"b\\\\c[d]\"=\"[e]\\\"f\\\\\""},
      {"e", REG_SZ, "\a\b\t\n\v\f\r\x1B\0"s, "\"e\"=\"\\a\\b\\t\\n\\v\\f\\r\\e\""},
      {"o", REG_SZ, "\001z\0011\0018\0377\0"s, "\"o\"=\"\\1z\\0011\\18\\0377\""},
      {"z", REG_SZ, "a\0001\000b\0"s, "\"z\"=\"a\\0001\\0b\""},
      {"x", REG_SZ, "\u00E9z\u00E9a\u20AC9\u20AC\177\0"s,
       "\"x\"=\"\\xe9z\\x00e9a\\x20ac9\\x20ac\x7F\""},
      {"no NUL", REG_SZ, "ab", "\"no NUL\"=hex(1):61,00,62,00"},
      {"empty", REG_SZ, "", "\"empty\"=hex(1):"},
      {"nul", REG_SZ, "\0"s, "\"nul\"=\"\""},
      {"s2", REG_EXPAND_SZ, "%x%\0"s, "\"s2\"=str(2):\"%x%\""},
      {"s7", REG_MULTI_SZ, "a\0b\0\0"s, "\"s7\"=str(7):\"a\\0b\\0\""},
      {"d", REG_DWORD, "\x78\x56\x34\x12"s, "\"d\"=dword:12345678"},
      {"d3", REG_DWORD, "abc", "\"d3\"=hex(4):61,62,63"},
      {"b5", REG_DWORD_BIG_ENDIAN, "abcd", "\"b5\"=hex(5):61,62,63,64"},
      {"n", REG_NONE, "", "\"n\"=hex(0):"},
      {"u", 0xFFFF1234, "a", "\"u\"=hex(ffff1234):61"},
      // Lines end behind column 76 or a little later, as the name's length has it.
      {"b", REG_BINARY, std::string(50, '\x11'),
       "\"b\"=hex:11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,\\\n"
       "  11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,\\\n"
       "  11,11"},
      {std::string(80, 'l'), REG_BINARY, "ab", "\"" + std::string(80, 'l') + "\"=hex:61,\\\n  62"},
  };
  for (const auto& [name, type, bytes, line] : cases) {
    SCOPED_TRACE(line);
    Replace(UserHive(), kHeader + "\n[K]\n");
    ASSERT_EQ(SetBytes("K", name, type, StoredData(type, bytes)), ERROR_SUCCESS);
    Save();
    EXPECT_EQ(Read(UserHive()), (kHeader + "\n[K]\n").append(line) + "\n");
  }
  Replace(UserHive(), kHeader);
  Set("a\"[b]\u00E9\\\x01", "v", "x");
  Save();
  EXPECT_NE(Read(UserHive()).find("\n[a\"\\[b\\]\\xe9\\\\\\1] "), std::string::npos);
}

TEST_F(HiveTest, ReadsWhatOthersMayHaveWritten) {
  const struct {
    std::string line;
    std::string name;
    DWORD type;
    std::string bytes;
  } cases[] = {
      {"\"\\x41\\102c\"=\"\\x20acg\\12345\\q\\xg\"", "ABc", REG_SZ, "\u20ACgS45qxg\0"s},
      {"\"v\"=str:\"x\"", "v", REG_SZ, "x\0"s},
      {"\t\"v\" =  \"x\" \t", "v", REG_SZ, "x\0"s},
      {"\"v\"=\"x\"\r", "v", REG_SZ, "x\0"s},
      {"\"v\"=hex:1, 2,AB c,\\\n\t\\\nDd,", "v", REG_BINARY, "\x01\x02\xAB\x0C\xDD"s},
      {"\"v\"=hex(4):01,00,00,00", "v", REG_DWORD, "\x01\0\0\0"s},
      {"\"v\"=dword:aB", "v", REG_DWORD, "\xAB\0\0\0"s},
      {"\"v\"=hex(1):41,00,42", "v", REG_SZ, "A"},
      {"@=\"d\"", "", REG_SZ, "d\0"s},
      {"\"v\"=\"x\"; \"w\"", "v", REG_SZ, "x\0"s},
      {"\"v\"=\"x\"\r\r", "v", REG_SZ, "x\0"s},
      {"\v\f\"v\"\v=\f\"a\rb\1\"", "v", REG_SZ, "a\rb\1\0"s},
      {"\"v\"=dword:", "v", REG_DWORD, "\0\0\0\0"s},
      {"\"v\"=dword:123456789 x", "v", REG_DWORD, "\x89\x67\x45\x23"s},
      {"\"v\"=dword: -0x2", "v", REG_DWORD, "\xFE\xFF\xFF\xFF"s},
      {"\"v\"=dword:fffffffffffffffff", "v", REG_DWORD, "\xFF\xFF\xFF\xFF"s},
      {"\"v\"=hex():01", "v", REG_NONE, "\x01"},
      {"\"v\"=hex(-1):01", "v", 0xFFFFFFFF, "\x01"},
      {"\"v\"=hex(100000003):01", "v", REG_BINARY, "\x01"},
      {"\"v\"=hex:1,,2", "v", REG_NONE, ""},
      {"\"v\"=hex(1):,41,00,00,00", "v", REG_NONE, ""},
      {"\"v\"=hex: 1", "v", REG_NONE, ""},
      {"\"v\"=hex:1,\\\n  2,,\\\n  3", "v", REG_NONE, ""},
      {"\"v\"=hex:1 2 ,0x1f,00f\\ ; c\n\t03,", "v", REG_BINARY, "\x01\x02\x1F\x0F\x03"},
      {"\"v\"=hex:1,\\\n\n\"w\"=\"y\"", "v", REG_BINARY, "\x01"},
  };
  for (const auto& [line, name, type, bytes] : cases) {
    SCOPED_TRACE(line);
    Replace(UserHive(), (kHeader + "[K]\n").append(line) + "\n");
    DWORD seenType = 0;
    EXPECT_EQ(Get("k", name, &seenType), bytes);
    EXPECT_EQ(seenType, type);
    EXPECT_TRUE(posix::HiveProblems().empty());
  }
  Replace(UserHive(), kHeader +
                          "[K\\\\\xC3\xA4\\\\\\\\L\\\\] "
                          "x\n\"\xC3\x84\"=\"1\"\n\"\xE2\x84\xAA\"=\"2\"\n\"k\"=\"3\"");
  EXPECT_EQ(Get("k\\\u00C4\\l", "\u00E4"), "1\0"s);
  EXPECT_EQ(Get("k\\\u00C4\\l", "K"), "3\0"s);
}

TEST_F(HiveTest, ReadsUtf8AsWineDoes) {
  const struct {
    std::string_view source;
    std::u16string text;
  } cases[] = {
      {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", u"\u00E4\u20AC\U0001F600"},
      {"a\xE4z\xE2\x82\\\\\\\xC3\xA4", u"az\\\u00E4"},
      {"\xC0\x80\xE0\x80\x80\xF4\x90\x80\x80\xF5z\\\xFF", u"z"},
      {"\xED\xA0\x80z\xED\xB0\x80", {0xD800, u'z', 0xDC00}},
  };
  for (const auto& [source, text] : cases) EXPECT_EQ(posix::DecodeText(source), text) << source;
}

TEST_F(HiveTest, HostileValuesSurviveTheFile) {
  int number = 0;
  for (const std::string& name : HostileNames())
    for (const HostileData& data : HostileDataTable())
      ASSERT_EQ(SetBytes("K" + std::to_string(++number), name, data.type, data.bytes),
                ERROR_SUCCESS);
  Save();
  posix::ForgetWorld();
  EXPECT_TRUE(posix::HiveProblems().empty());
  number = 0;
  for (const std::string& name : HostileNames())
    for (const HostileData& data : HostileDataTable()) {
      EXPECT_EQ(GetBytes("K" + std::to_string(++number), name), std::pair(data.type, data.bytes))
          << data.what;
    }
}

TEST_F(HiveTest, DamagedFilesAreReadAndNeverWritten) {
  const std::string good = "\n[K] 1\n\"v\"=\"x\"\n";
  struct Case {
    std::string bytes;
    const char* problem;
    bool isRead;
  };
  std::vector<Case> cases = {
      {"", "line 1", false},
      {"REGEDIT4\n" + good, "line 1", false},
      {"WINE REGISTRY Version 3\n" + good, "line 1", false},
      {"\177ELF\0\0\1\2\n"s + good, "line 1", false},
      {kHeader + good + "\"w\"=\"abc", "line 8: it ends in the middle of a text", true},
      {kHeader + good + "\"w\"=\"abc\n", "line 8: it ends in the middle of a text", true},
      {kHeader + good + "\"w\"=\"abc\\\n", "line 8: it ends in the middle of an escape", true},
      {kHeader + good + "\"w\"=hex:01,\\\n", "line 8: the file is cut", true},
      {kHeader + good + "\"w\"=\"\0\"\n"s, "line 8", true},
      {kHeader + "\"v\"=\"y\"\n" + good, "line 5: the value belongs to no key", true},
  };
  for (const char* line :
       {"\"w", "\"w\"", "\"w\"=", "\"w\"=str(1):\"x\"", "\"w\"=qword:1", "\"w\"=hex:01,zz",
        "\"w\"=hex:0123", "\"w\"=hex:01 ; c", "\"w\"=hex(zz):01", "[L", "rubbish"})
    cases.push_back({kHeader + good + line + "\n", "line 8", true});
  for (const auto& [bytes, problem, isRead] : cases) {
    SCOPED_TRACE(bytes);
    Replace(UserHive(), bytes);
    EXPECT_EQ(Get("K", "v"), isRead ? std::optional("x\0"s) : std::nullopt);
    EXPECT_EQ(Get("K", "in"), std::nullopt);
    ASSERT_EQ(posix::HiveProblems().size(), 1U);
    EXPECT_TRUE(posix::HiveProblems().front().starts_with("user.reg, "s + problem))
        << posix::HiveProblems().front();
    EXPECT_EQ(Set("K", "v", "y"), ERROR_REGISTRY_CORRUPT);
    EXPECT_EQ(Set("New", "v", "y"), ERROR_REGISTRY_CORRUPT);
    if (isRead) {
      EXPECT_EQ(Delete("K", "v"), ERROR_REGISTRY_CORRUPT);
    }
    Save();
    EXPECT_EQ(Read(UserHive()), bytes);
  }
}

TEST_F(HiveTest, FollowsSymbolicLinkKeys) {
  const auto link = [](const std::string& key, std::u16string_view target) {
    return "\n[" + key + "] 1\n#link\n" +
           posix::WriteValueLine(u"SymbolicLinkValue", {6, posix::BytesOf(target)}).text;
  };
  Write(Prefix() / "system.reg",
        kHeader + "\n[System\\\\ControlSet001\\\\Nls] 1\n\"ACP\"=\"1250\"\n" +
            link("System\\\\CurrentControlSet", u"\\Registry\\Machine\\System\\ControlSet001") +
            link("Loop", u"\\REGISTRY\\MACHINE\\Loop\\x") + link("Out", u"\\??\\C:") +
            link("User", u"\\Registry\\User\\S-1-5-21-0-0-0-1000\\K"));
  Write(UserHive(), kHeader + "\n[K\\\\L] 1\n\"v\"=\"x\"\n");
  EXPECT_EQ(posix::MachineText(u"SYSTEM\\CurrentControlSet\\nls", u"acp"), u"1250");
  EXPECT_EQ(Get("System\\CurrentControlSet\\Nls", "ACP", nullptr, HKEY_LOCAL_MACHINE), "1250\0"s);
  EXPECT_EQ(Get("User\\L", "v", nullptr, HKEY_LOCAL_MACHINE), "x\0"s);
  for (const char* lost : {"Loop", "Loop\\y", "Out\\x", "System\\CurrentControlSet\\No"})
    EXPECT_EQ(posix::MachineText(std::u16string(lost, lost + std::strlen(lost)), u"v"),
              std::nullopt);
}

TEST_F(HiveTest, MachineHiveIsOnlyRead) {
  Write(Prefix() / "system.reg", kHeader + "\n[Software\\\\K] 1\n\"v\"=\"x\"\n");
  HKEY key = nullptr;
  for (const REGSAM rights : {KEY_SET_VALUE, KEY_CREATE_SUB_KEY, REGSAM{0x3F}})
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, W("Software\\K"), 0, rights, &key),
              ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, W("Software\\N"), 0, nullptr, 0, KEY_QUERY_VALUE,
                            nullptr, &key, nullptr),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(Get("software\\k", "V", nullptr, HKEY_LOCAL_MACHINE), "x\0"s);
}

TEST_F(HiveTest, CostOfAValueDoesNotGrowWithTheKey) {
  const auto cost = [](int count) {
    const std::clock_t begin = std::clock();
    const auto name = [](int i) { return "File" + std::to_string(i); };
    for (int i = 0; i < count; ++i) Set("Big", name(i), "x");
    Save();
    for (int i = count; i-- > 0;) EXPECT_EQ(Get("Big", name(i)), "x\0"s);
    EXPECT_EQ(Texts("Big").size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
      EXPECT_EQ(Delete("Big", name((i * 7919) % count)), ERROR_SUCCESS);
    Save();
    return static_cast<double>(std::clock() - begin) / count;
  };
  cost(1000);
  const double few = cost(2000);
  EXPECT_LT(cost(40000), 4 * few) << "a quadratic step would make it twenty times";
}

}  // namespace
}  // namespace torvane::testing
