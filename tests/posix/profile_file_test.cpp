// What the layer promises of profile files beyond the documented rules: surgical, whole or not at
// all, shared, at a flat cost.
#include <sys/stat.h>

#include <chrono>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/disk/write_back.h"
#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

using namespace std::string_literals;
using posix::WriteBackChanges;

class ProfileFileTest : public ScratchWorld {
 protected:
  static std::string Value(const std::string& path, const char* section, const char* key) {
    Text buffer(256, u'\0');
    const DWORD count =
        GetPrivateProfileStringW(W(section), W(key), W(""), WideBuffer(buffer), 256, W(path));
    return Utf8(TextView(buffer).substr(0, count));
  }

  static BOOL Write(const std::string& path, const char* section, const char* key,
                    const char* value) {
    return WritePrivateProfileStringW(W(section), W(key), W(value), W(path));
  }

  void Overwrite(const std::string& path, std::string_view bytes) const {
    std::ofstream(Host(path), std::ios::binary) << bytes;
  }
};

TEST_F(ProfileFileTest, WritingTouchesOnlyItsOwnLines) {
  struct Row {
    std::string before;
    const char* section;
    const char* key;
    const char* value;
    std::string after;
  };
  const auto utf16 = [](std::u16string_view text) {
    return "\xFF\xFE" + std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2);
  };
  const std::string head = "; head\r\n\r\n";
  const std::string first = "[S] ; s\r\n Key = \"old\" \r\n;c\r\nbare\r\n";
  const std::string second = "\n\n[t]\nx=\t1\r\ny=2";
  const std::string rich = head + first + second;
  const std::vector<Row> rows = {
      {rich, "s", "key", "new", head + "[S] ; s\r\n Key = new\r\n;c\r\nbare\r\n" + second},
      {rich, "S", "more", "1", head + first + "more=1\r\n" + second},
      {rich, "t", "x", "3", head + first + "\n\n[t]\nx=\t3\r\ny=2"},
      {rich, "t", "y", "3", head + first + "\n\n[t]\nx=\t1\r\ny=3"},
      {rich, "t", "z", "3", rich + "\r\nz=3\r\n"},
      {rich, "u", "z", "3", rich + "\r\n[u]\r\nz=3\r\n"},
      {rich, "s", "key", nullptr, head + "[S] ; s\r\n;c\r\nbare\r\n" + second},
      {rich, "s", nullptr, nullptr, "; head\r\n\r\n[t]\nx=\t1\r\ny=2"},
      {"[a]\nx=1\n\n[b]\n", "a", "y", "2", "[a]\nx=1\ny=2\n\n[b]\n"},
      {"[a]\nx=1\n\n", "b", "y", "2", "[a]\nx=1\n\n[b]\ny=2\n"},
      {"[a]\rx=1\r", "a", "y", "2", "[a]\rx=1\ry=2\r"},
      {"[a]", "a", "y", "2", "[a]\r\ny=2\r\n"},
      {"[a]\nx=1\n\ny=2\n\n[b]\n", "a", "y", nullptr, "[a]\nx=1\n\n\n[b]\n"},
      {"\xEF\xBB\xBF[a]\r\nx=1\r\n[b]\r\n", "a", "x", "2", "\xEF\xBB\xBF[a]\r\nx=2\r\n[b]\r\n"},
      {"\xEF\xBB\xBF[a]\nx=\xFF\ny", "a", "z", "\u00E4",
       "\xEF\xBB\xBF[a]\nx=\xFF\ny\nz=\xC3\xA4\n"},
      {"\xFE\xFF\0[\0a\0]\0\n\x0Ax\0=\0\n\0x\0=\0 \x04\x16\0\n\0"s, "a", "x", "\u00E4",
       "\xFE\xFF\0[\0a\0]\0\n\x0Ax\0=\0\n\0x\0=\0 \0\xE4\0\n\0"s},
      {std::string("[a]\n\x81\xFF\x90=\x8D\nz\0=1\nx=1\n", 19), "a", "x", "2\u00E4",
       std::string("[a]\n\x81\xFF\x90=\x8D\nz\0=1\nx=2\xE4\n", 20)},
      {utf16(u"[a]\r\nx = \u0416\r\n\u3042=1\r\n"), "a", "x", "\u00E4\u65E5",
       utf16(u"[a]\r\nx = \u00E4\u65E5\r\n\u3042=1\r\n")},
      {utf16(u"[a]\nx=1"), "a", "y", "2", utf16(u"[a]\nx=1\ny=2\n")},
      {utf16(u"[a]\nx") + "y", "b", "y", "2", utf16(u"[a]\nx\n[b]\ny=2\n")},
  };
  int number = 0;
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::PrintToString(row.before) + " / " + (row.key ? row.key : "-"));
    const std::string path = MakeFile("surgical" + std::to_string(++number) + ".ini", row.before);
    EXPECT_EQ(Write(path, row.section, row.key, row.value), TRUE);
    EXPECT_EQ(FileBytes(path), row.before) << "written before the command's end";
    EXPECT_TRUE(WriteBackChanges().empty());
    EXPECT_EQ(FileBytes(path), row.after);
  }
}

TEST_F(ProfileFileTest, WhatThePageCannotHoldIsRefused) {
  const std::string bytes = "[a]\nx=1\n";
  const std::string path = MakeFile("page.ini", bytes);
  const std::u16string wide(path.begin(), path.end());
  for (const auto& [section, key, value] :
       {std::array{u"a", u"x", u"\u0416"}, {u"a", u"\u0416", u"1"}, {u"\u0416", u"x", u"1"}}) {
    EXPECT_EQ(WritePrivateProfileStringW(section, key, value, wide.c_str()), FALSE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_UNICODE_TRANSLATION));
  }
  EXPECT_TRUE(WriteBackChanges().empty());
  EXPECT_EQ(FileBytes(path), bytes);
}

TEST_F(ProfileFileTest, ChangesThatChangeNothingLeaveTheFileAlone) {
  const std::string path = MakeFile("same.ini", "[a]\nx=1\n");
  struct stat before {};
  struct stat after {};
  stat(Host(path).c_str(), &before);
  EXPECT_EQ(Write(path, "a", "x", "1"), TRUE);
  EXPECT_EQ(Write(path, "a", "none", nullptr), TRUE);
  EXPECT_EQ(Write(path, "b", nullptr, nullptr), TRUE);
  EXPECT_TRUE(WriteBackChanges().empty());
  stat(Host(path).c_str(), &after);
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(ProfileFileTest, OthersChangesAreKept) {
  const std::string path = MakeFile("shared.ini", "[a]\nx=1\ny=1\n[b]\nz=1\n");
  EXPECT_EQ(Value(path, "a", "x"), "1");
  EXPECT_EQ(Write(path, "a", "x", "mine"), TRUE);
  EXPECT_EQ(Write(path, "a", "y", nullptr), TRUE);
  Overwrite(path, "[b]\nz=theirs\nw=theirs\n[a]\nx=1\ny=1\nq=1\n");
  EXPECT_EQ(Value(path, "b", "w"), "") << "a command works on one state of the file";
  EXPECT_EQ(Value(path, "a", "x"), "mine");
  Overwrite(path, "[b]\nz=later!\nw=theirs\n[a]\nx=1\ny=1\nq=1\n");
  EXPECT_TRUE(WriteBackChanges().empty());
  EXPECT_EQ(FileBytes(path), "[b]\nz=later!\nw=theirs\n[a]\nx=mine\nq=1\n");
  EXPECT_EQ(Value(path, "b", "w"), "theirs");
}

TEST_F(ProfileFileTest, AFileThatMayNotBeWrittenKeepsNothing) {
  const std::string path = MakeFile("readonly.ini", "[a]\nx=1\n");
  ::chmod(Host(path).c_str(), 0444);
  EXPECT_EQ(Write(path, "a", "x", "2"), FALSE);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
  EXPECT_EQ(Write(path, "a", "none", nullptr), TRUE);
  EXPECT_EQ(Value(path, "a", "x"), "1");
  EXPECT_TRUE(WriteBackChanges().empty());
  EXPECT_EQ(FileBytes(path), "[a]\nx=1\n");
}

TEST_F(ProfileFileTest, LinksAreFollowedAndRightsKept) {
  const std::string target = MakeFile("elsewhere\\real.ini", "[a]\nx=1\n");
  ::chmod(Host(target).c_str(), 0640);
  const std::string link = Folder() + "\\link.ini";
  const std::string dangling = Folder() + "\\dangling.ini";
  std::filesystem::create_symlink("elsewhere/real.ini", Host(link));
  std::filesystem::create_symlink("elsewhere/none.ini", Host(dangling));
  EXPECT_EQ(Write(link, "a", "x", "2"), TRUE);
  EXPECT_EQ(Write(dangling, "a", "x", "2"), FALSE);
  EXPECT_TRUE(WriteBackChanges().empty());
  EXPECT_TRUE(std::filesystem::is_symlink(Host(link)));
  EXPECT_EQ(FileBytes(target), "[a]\nx=2\n");
  struct stat status {};
  stat(Host(target).c_str(), &status);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  EXPECT_FALSE(std::filesystem::exists(Host(dangling)));
}

TEST_F(ProfileFileTest, RewritingManyKeysIsLinear) {
  constexpr int kKeys = 20'000;
  std::string file = "[s]\r\n";
  for (int i = 0; i < kKeys; ++i) file += "File" + std::to_string(i) + "=c:\\data\\f.txt\r\n";
  const std::string path = MakeFile("many.ini", file + "\r\n[t]\r\n");
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kKeys; ++i) Write(path, "s", ("File" + std::to_string(i)).c_str(), nullptr);
  for (int i = 0; i < kKeys; ++i)
    Write(path, "s", ("File" + std::to_string(i)).c_str(), "c:\\data\\f.txt");
  EXPECT_TRUE(WriteBackChanges().empty());
  // Linear work takes a fraction of a second; what is quadratic takes minutes.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
  EXPECT_EQ(FileBytes(path), file + "\r\n[t]\r\n");
}

}  // namespace
}  // namespace torvane::testing
