// Conformance of the profile calls: holds on Windows and on the layer.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

class ProfileTest : public ScratchWorld {
 protected:
  /// A file of a name that was never used, so that no cache knows it.
  std::string Make(std::string_view bytes) {
    return MakeFile("profile" + std::to_string(++made_) + ".ini", bytes);
  }

  /// As much of the buffer as the call counts, with NULs shown as '|'.
  static std::string Read(const std::string& path, const char* section, const char* key,
                          DWORD size = 4096, const char* fallback = "def") {
    Text buffer(size + 4, u'#');
    const DWORD count = GetPrivateProfileStringW(W(section), W(key), W(fallback),
                                                 WideBuffer(buffer), size, W(path));
    EXPECT_EQ(buffer.substr(size), u"####") << "written behind the buffer's end";
    // Of a file that isn't there Wine gives no names and leaves the buffer alone.
    const bool isClosed = size > 0 && (section != nullptr || count != 0);
    EXPECT_TRUE(buffer[count] == u'\0' || !isClosed);
    buffer.resize(count);
    std::replace(buffer.begin(), buffer.end(), u'\0', u'|');
    return Utf8(buffer);
  }

  static BOOL Write(const std::string& path, const char* section, const char* key,
                    const char* value) {
    const BOOL result = WritePrivateProfileStringW(W(section), W(key), W(value), W(path));
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, W(path));
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
    EXPECT_EQ(Read(path, row.section, row.key), row.value) << row.section << "/" << row.key;
  }
  EXPECT_EQ(Read(path, "One", nullptr),
            "plain|blanks|quoted|single|half|empty|none|equals|plain|PLAIN|");
  EXPECT_EQ(Read(path, nullptr, nullptr), "One|two|Three|one|");
  EXPECT_EQ(Read(path, nullptr, "key"), "One|two|Three|one|");
  EXPECT_EQ(Read(path, "missing", nullptr, 64, ""), "");
  MakeWindowsFile("torvane-test.ini", "[s]\r\nk=1\r\n");
  EXPECT_EQ(Read("torvane-test.ini", "s", "k"), "1") << "a bare name";
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
      {"s", "k", 11, "0123456789"}, {"s", "k", 10, "012345678"}, {"s", "k", 0, ""},
      {"s", nullptr, 9, "k|ab|c|"}, {"s", nullptr, 8, "k|ab|c"}, {"s", nullptr, 7, "k|ab|"},
      {nullptr, nullptr, 4, "s|"},  {nullptr, nullptr, 3, "s"},  {"x", "k", 3, "de"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(Read(path, row.section, row.key, row.size), row.text) << row.size;
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
      {"[s]\r\na=1", "s", "b", "2", "2", "a|b|"},
      {"[s]\r\na = 1 \r\n", "s", "A", "2", "2", "a|"},
      {"[s]\r\nbare\r\n", "s", "bare", "2", "2", "bare|"},
      {"[s]\na=1\na=2\n", "s", "a", "3", "3", "a|a|"},
      {"", "s", "a", "1", "1", "a|"},
      {"[s]\r\n", "s", "a", " \"q\" ", "q", "a|"},
      {"[s]\r\n", "s", "a", "", "", "a|"},
      {"[s]\r\n", "s", "a", "x\u00E4\u20AC", "x\u00E4\u20AC", "a|"},
      {"[s]\r\n", "s", "a", "x\r\nb=y", "x", "a|b|"},
      {"[s]\r\na=1\r\nb=2\r\n", "s", "a", nullptr, "def", "b|"},
      {"[s]\r\na=1\r\na=2\r\n", "s", "a", nullptr, "2", "a|"},
      {"[s]\r\na=1\r\n[s]\r\nb=2\r\n", "s", nullptr, nullptr, "s|", "b|"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(::testing::Message() << row.file << " / " << (row.key != nullptr ? row.key : "-"));
    const std::string path = Make(row.file);
    EXPECT_EQ(Write(path, row.section, row.key, row.value), TRUE);
    const char* section = row.key != nullptr ? row.section : nullptr;
    EXPECT_EQ(Read(path, section, row.key), row.read);
    EXPECT_EQ(Read(path, row.section, nullptr), row.keys);
  }
}

TEST_F(ProfileTest, OddFilesGiveWhatCanBeRead) {
  const std::string longLine(100'000, 'x');
  struct Row {
    std::string file;
    const char* key;
    std::string value;
  };
  const std::vector<Row> rows = {
      {"[s]\r\na=1\nb=2\r\n\nc=3", "c", "3"},
      {"[s]\ra=1\rb=2\r", "b", "2"},
      {"[s]\r\nlong=" + longLine + "\r\nb=2\r\n", "long", longLine.substr(0, 4095)},
      {longLine + "\r\n[s]\r\nb=2\r\n", "b", "2"},
      {"[s]\r\n\x80\xFF=\x81\xE4\r\nb=2", "\u20AC\u00FF", "\u0081\u00E4"},
      {"[s\r\nb=1\r\n", "b", "def"},
      {"]\r\n=\r\n[\r\n[]\r\n[s]\r\n=\r\n;\r\nb=2\r\n", "b", "2"},
      {std::string("\xFF\xFE[\0s\0]\0\r\0\n\0b\0=\0\x16\x04\r\0\n\0", 22), "b", "\u0416"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.file.substr(0, 30));
    const std::string path = Make(row.file);
    EXPECT_EQ(Read(path, "s", row.key), row.value);
    EXPECT_EQ(Write(path, "s", "new", "1"), TRUE);
    EXPECT_EQ(Read(path, "s", "new"), "1");
    EXPECT_EQ(Read(path, "s", row.key), row.value);
  }
}

TEST_F(ProfileTest, ASectionIsWrittenWithAllItsLines) {
  const std::string path = Make("[a]\r\nx=1\r\n[s]\r\nold=1\r\n[b]\r\ny=2\r\n[S]\r\nz=3\r\n");
  const Text lines(u"k=1\0j=\"q\"\0K=2\0", 14);
  EXPECT_EQ(WritePrivateProfileSectionW(W("S"), Wide(lines), W(path)), TRUE);
  ScratchWorld::WriteBack();
  Text buffer(64, u'#');
  const DWORD count = GetPrivateProfileSectionW(W("s"), WideBuffer(buffer), 64, W(path));
  EXPECT_EQ(buffer.substr(0, count), lines);
  EXPECT_EQ(Read(path, "s", "k"), "1");
  EXPECT_EQ(Read(path, "s", "old"), "def");
  EXPECT_EQ(WritePrivateProfileSectionW(W("s"), nullptr, W(path)), TRUE);
  EXPECT_EQ(Read(path, nullptr, nullptr), "a|b|S|");
  EXPECT_EQ(Read(path, "a", "x"), "1");
}

TEST_F(ProfileTest, WhatIsNoFileReadsAsNothing) {
  const std::string missing = Folder() + "\\missing.ini";
  const std::string noFolder = Folder() + "\\none\\a.ini";
  const std::string folder = MakeFolder("folder.ini");
  for (const std::string& path : {missing, noFolder, folder}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(Read(path, "s", "k"), "def");
    EXPECT_EQ(Read(path, nullptr, nullptr, 64, ""), "");
  }
  EXPECT_EQ(Write(noFolder, "s", "k", "1"), FALSE);
  EXPECT_EQ(Write(folder, "s", "k", "1"), FALSE);
  EXPECT_EQ(Write(missing, nullptr, "k", "1"), FALSE);
  EXPECT_EQ(Write(missing, "s", "k", nullptr), TRUE);
  EXPECT_FALSE(std::filesystem::exists(Host(missing)));
  EXPECT_EQ(Write(missing, "s", "k", "1"), TRUE);
  EXPECT_EQ(FileBytes(missing), "[s]\r\nk=1\r\n");
}

}  // namespace
}  // namespace torvane::testing
