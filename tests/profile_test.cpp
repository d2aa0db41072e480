// Conformance of the profile calls: holds on Windows and on the layer.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

/// What a reading call gave: the count, and the buffer up to its size with NULs shown as '|'.
struct Reading {
  DWORD count = 0;
  std::string text;
};

class ProfileTest : public ScratchWorld {
 protected:
  /// A file of a name that was never used, so that no cache knows it.
  std::string Make(std::string_view bytes) {
    return MakeFile("profile" + std::to_string(++made_) + ".ini", bytes);
  }

  static Reading Read(const std::string& path, const char* section, const char* key,
                      DWORD size = 4096, const char* fallback = "def") {
    constexpr std::size_t kBehind = 4;
    std::string buffer(size + kBehind, '#');
    Reading reading;
    reading.count =
        GetPrivateProfileStringA(section, key, fallback, buffer.data(), size, path.c_str());
    EXPECT_EQ(buffer.substr(size), "####") << "written behind the buffer's end";
    EXPECT_EQ(buffer[reading.count], size > 0 ? '\0' : '#');
    reading.text = buffer.substr(0, reading.count);
    std::replace(reading.text.begin(), reading.text.end(), '\0', '|');
    return reading;
  }

  static BOOL Write(const std::string& path, const char* section, const char* key,
                    const char* value) {
    const BOOL result = WritePrivateProfileStringA(section, key, value, path.c_str());
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.c_str());
    return result;
  }

 private:
  int made_ = 0;
};

TEST_F(ProfileTest, ReadsByTheDocumentedRules) {
  const std::string file =
      "ahead=0\r\n[One]\r\nplain=text\r\n \tblanks \t = \t two words \t\r\n;comment=1\r\nbare\r\n"
      "quoted=\" kept \"\r\nsingle='x'\r\nhalf=\"x\r\nempty=\r\nnone=\"\"\r\nequals=a=b=c\r\n"
      "plain=second\r\nPLAIN=third\r\n\r\n[two] behind\r\nPlain=2\r\n[ Three ]\nlf=3\n[one]\r\n"
      "late=1\r\n[open\r\nlast=end";
  const std::string path = Make(file);
  struct Row {
    const char* section;
    const char* key;
    const char* value;
  };
  constexpr Row kRows[] = {
      {"One", "plain", "text"},       {"ONE", "PlAiN", "text"},    {" One ", " plain ", "text"},
      {"One", "blanks", "two words"}, {"One", "comment", "def"},   {"One", "bare", "def"},
      {"One", "quoted", " kept "},    {"One", "single", "x"},      {"One", "half", "\"x"},
      {"One", "empty", ""},           {"One", "none", ""},         {"One", "equals", "a=b=c"},
      {"One", "late", "def"},         {"two", "plain", "2"},       {"Three", "lf", "3"},
      {"one", "last", "def"},         {"missing", "plain", "def"}, {"One", "missing", "def"},
      {"One", "ahead", "def"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(Read(path, row.section, row.key).text, row.value) << row.section << "/" << row.key;
  }
  EXPECT_EQ(Read(path, "One", nullptr).text,
            "plain|blanks|quoted|single|half|empty|none|equals|plain|PLAIN|");
  EXPECT_EQ(Read(path, nullptr, nullptr).text, "One|two|Three|one|");
  EXPECT_EQ(Read(path, nullptr, "key").text, "One|two|Three|one|");
  EXPECT_EQ(Read(path, "missing", nullptr, 64, "").text, "");
}

TEST_F(ProfileTest, CutsWhatDoesNotFit) {
  const std::string path = Make("[s]\r\nk=0123456789\r\nab=1\r\nc=2\r\n");
  struct Row {
    const char* section;
    const char* key;
    DWORD size;
    const char* text;
  };
  constexpr Row kRows[] = {
      {"s", "k", 11, "0123456789"},
      {"s", "k", 10, "012345678"},
      {"s", "k", 1, ""},
      {"s", "k", 0, ""},
      {"s", nullptr, 9, "k|ab|c|"},
      {"s", nullptr, 8, "k|ab|c"},
      {"s", nullptr, 7, "k|ab|"},
      {"s", nullptr, 3, "k"},

      {nullptr, nullptr, 4, "s|"},
      {nullptr, nullptr, 3, "s"},
      {"x", "k", 3, "de"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.size);
    const Reading reading = Read(path, row.section, row.key, row.size);
    EXPECT_EQ(reading.text, row.text);
    EXPECT_EQ(reading.count, std::string_view(row.text).size());
  }
}

TEST_F(ProfileTest, WhatIsWrittenReadsBack) {
  struct Row {
    const char* file;
    const char* section;
    const char* key;
    const char* value;
    const char* read;  ///< the value read back
    const char* keys;  ///< the section's keys afterwards
  };
  constexpr Row kRows[] = {
      {"[s]\r\na=1\r\nb=2\r\n", "s", "a", "new", "new", "a|b|"},
      {"[s]\r\na=1\r\n\r\n[t]\r\na=9\r\n", "S", "c", "3", "3", "a|c|"},
      {"[s]\r\na=1", "s", "b", "2", "2", "a|b|"},
      {"[s]\r\na=1", "t", "b", "2", "2", "b|"},
      {"[s]\r\na = 1 \r\n", "s", "A", "2", "2", "a|"},
      {"[s]\r\nbare\r\n", "s", "bare", "2", "2", "bare|"},
      {"[s]\na=1\na=2\n", "s", "a", "3", "3", "a|a|"},
      {"", "s", "a", "1", "1", "a|"},
      {"[s]\r\n", "s", "a", " \"q\" ", "q", "a|"},
      {"[s]\r\n", "s", "a", "", "", "a|"},
      {"[s]\r\n", "s", "a", "x\xE4\x80", "x\xE4\x80", "a|"},
      {"[s]\r\n", "s", "a", "x\r\nb=y", "x", "a|b|"},
      {"[s]\r\na=1\r\nb=2\r\n", "s", "a", nullptr, "def", "b|"},
      {"[s]\r\na=1\r\na=2\r\n", "s", "a", nullptr, "2", "a|"},
      {"[s]\r\na=1\r\n", "s", "b", nullptr, "def", "a|"},
      {"[s]\r\na=1\r\n[t]\r\nb=2\r\n", "s", nullptr, nullptr, "t|", "def"},
      {"[s]\r\na=1\r\n[s]\r\nb=2\r\n", "s", nullptr, nullptr, "s|", "b|"},
      {"[s]\r\na=1\r\n", "t", nullptr, nullptr, "s|", "def"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(::testing::Message() << row.file << " / " << (row.key != nullptr ? row.key : "-"));
    const std::string path = Make(row.file);
    EXPECT_EQ(Write(path, row.section, row.key, row.value), TRUE);
    const char* section = row.key != nullptr ? row.section : nullptr;
    EXPECT_EQ(Read(path, section, row.key).text, row.read);
    EXPECT_EQ(Read(path, row.section, nullptr).text, row.keys);
  }
}

TEST_F(ProfileTest, OddFilesGiveWhatCanBeRead) {
  const std::string longLine(100'000, 'x');
  std::string manyKeys = "[s]\n";
  for (int i = 0; i < 1000; ++i)
    manyKeys += "k" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  struct Row {
    std::string file;
    const char* key;
    std::string value;
  };
  const std::vector<Row> rows = {
      {"[s]\r\na=1\nb=2\r\n\nc=3", "c", "3"},
      {"[s]\ra=1\rb=2\r", "b", "2"},
      {"[s]\r\nlong=" + longLine + "\r\nb=2\r\n", "b", "2"},
      {"[s]\r\nlong=" + longLine + "\r\nb=2\r\n", "long", longLine.substr(0, 4095)},
      {longLine + "\r\n[s]\r\nb=2\r\n", "b", "2"},
      {manyKeys, "k999", "999"},
      {"[s]\r\n\x80\xFF=\x81\xE4\r\nb=2", "\x80\xFF", "\x81\xE4"},
      {"[s\r\nb=1\r\n", "b", "def"},
      {"]\r\n=\r\n[\r\n[]\r\n[s]\r\n=\r\n;\r\nb=2\r\n", "b", "2"},
      {std::string("\xFF\xFE[\0s\0]\0\r\0\n\0b\0=\0\xE4\0\r\0\n\0", 22), "b", "\xE4"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.file.substr(0, 30));
    const std::string path = Make(row.file);
    EXPECT_EQ(Read(path, "s", row.key).text, row.value);
    EXPECT_EQ(Write(path, "s", "new", "1"), TRUE);
    EXPECT_EQ(Read(path, "s", "new").text, "1");
    EXPECT_EQ(Read(path, "s", row.key).text, row.value);
  }
}

TEST_F(ProfileTest, WhatIsNoFileReadsAsNothing) {
  const std::string missing = Folder() + "\\missing.ini";
  const std::string noFolder = Folder() + "\\none\\a.ini";
  const std::string folder = MakeFolder("folder.ini");
  for (const std::string& path : {missing, noFolder, folder}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(Read(path, "s", "k").text, "def");
    EXPECT_EQ(Read(path, nullptr, nullptr, 64, "").text, "");
  }
  EXPECT_EQ(Write(noFolder, "s", "k", "1"), FALSE);
  EXPECT_EQ(Write(folder, "s", "k", "1"), FALSE);
  EXPECT_EQ(Write(missing, nullptr, "k", "1"), FALSE);
  EXPECT_EQ(Write(missing, "s", "k", nullptr), TRUE);
  EXPECT_FALSE(std::filesystem::exists(Host(missing)));
  EXPECT_EQ(Write(missing, "s", "k", "1"), TRUE);
  EXPECT_EQ(FileBytes(missing), "[s]\r\nk=1\r\n");
}

TEST_F(ProfileTest, BareNameMeansTheWindowsFolder) {
  const std::string name = "torvane-test.ini";
  const std::string full = "C:\\windows\\" + name;
  EXPECT_EQ(Write(name, "s", "k", "1"), TRUE);
  EXPECT_EQ(FileBytes(full), "[s]\r\nk=1\r\n");
  EXPECT_EQ(Read(full, "S", "K").text, "1");
  std::filesystem::remove(Host(full));
}

}  // namespace
}  // namespace torvane::testing
