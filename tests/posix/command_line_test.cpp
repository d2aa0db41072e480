#include "platform/posix/shell/command_line.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/prefix/prefix.h"
#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

using posix::FindProgramCall;
using posix::SplitArguments;
using Arguments = std::vector<std::u16string>;

TEST(CommandLine, SplitsByTheWindowsRules) {
  struct Row {
    const char16_t* text;
    Arguments arguments;
  };
  const std::vector<Row> rows = {
      {u"", {}},
      {u"  \t ", {}},
      {u" a  b\tc ", {u"a", u"b", u"c"}},
      {u"\"a b\" c", {u"a b", u"c"}},
      {u"\"c:\\a b.txt\" \"c:\\d.txt\" ", {u"c:\\a b.txt", u"c:\\d.txt"}},
      {u"a\"b c\"d", {u"ab cd"}},
      {u"\"\" x", {u"", u"x"}},
      {u"\"open end", {u"open end"}},
      {u"\"a\\\\\" b", {u"a\\", u"b"}},
      {u"a\\\\b \\\\\\\"c", {u"a\\\\b", u"\\\"c"}},
      {u"\"a\\\"b\" c", {u"a\"b", u"c"}},
      {u"\"a\"\"b\" c", {u"a\"b", u"c"}},
      {u"c:\\dir\\ x", {u"c:\\dir\\", u"x"}},
      {u"a;b&c $(d) `e` -f 'g h' *.?", {u"a;b&c", u"$(d)", u"`e`", u"-f", u"'g", u"h'", u"*.?"}},
  };
  for (const Row& row : rows) EXPECT_EQ(SplitArguments(row.text), row.arguments) << Utf8(row.text);
}

TEST(CommandLine, FindsAProgramWhosePathHoldsBlanks) {
  struct Row {
    const char16_t* line;
    std::set<std::u16string> existing;
    const char16_t* program;  ///< empty for none
    const char16_t* arguments;
  };
  const std::vector<Row> rows = {
      {u"C:\\p\\a.exe \"x y\"", {u"C:\\p\\a.exe"}, u"C:\\p\\a.exe", u" \"x y\""},
      {u"C:\\My Dir\\a b.exe x", {u"C:\\My Dir\\a b.exe"}, u"C:\\My Dir\\a b.exe", u" x"},
      {u"C:\\My Dir\\a b x", {u"C:\\My Dir\\a b.exe"}, u"C:\\My Dir\\a b.exe", u" x"},
      {u"C:\\My Dir\\a.exe", {u"C:\\My.exe", u"C:\\My Dir\\a.exe"}, u"C:\\My.exe", u" Dir\\a.exe"},
      {u" \"C:\\My Dir\\a\" x", {u"C:\\My Dir\\a.exe", u"C:\\My.exe"}, u"C:\\My Dir\\a.exe", u" x"},
      {u"\"C:\\My Dir\\a.exe", {u"C:\\My Dir\\a.exe"}, u"C:\\My Dir\\a.exe", u""},
      {u"C:\\a.exe  ", {u"C:\\a.exe"}, u"C:\\a.exe", u"  "},
      {u"C:\\none.exe x", {u"C:\\a.exe"}, u"", u""},
      {u"", {u".exe"}, u"", u""},
      {u"   ", {u".exe"}, u"", u""},
  };
  for (const Row& row : rows) {
    const auto call = FindProgramCall(row.line, [&](const std::u16string& name) {
      return row.existing.count(name) != 0 ? std::optional(name) : std::nullopt;
    });
    EXPECT_EQ(call ? call->program : u"", row.program) << Utf8(row.line);
    EXPECT_EQ(call ? call->arguments : u"", row.arguments) << Utf8(row.line);
  }
}

/// Programs of the host that write down how they were started.
class StartTest : public ScratchWorld {
 protected:
  StartTest() : bin_(Host(MakeFolder("bin"))), log_(bin_ / "log") {
    if (const char* path = std::getenv("PATH")) path_ = path;
    ::setenv("PATH", (bin_.string() + ":/usr/bin:/bin").c_str(), 1);
  }
  ~StartTest() override { ::setenv("PATH", path_.c_str(), 1); }

  void MakeProgram(const std::string& name) const {
    const std::filesystem::path path = bin_ / name;
    const std::string log = "'" + log_.string() + "'";
    std::ofstream(path) << "#!/bin/sh\n"
                        << "{ printf '%s|' \"$@\"; printf '%s' \"$WINEPREFIX\"\n"
                        << "for i in 3 4 5 6 7 8 9; do [ -e /proc/$$/fd/$i ] && printf ' fd%s' $i; "
                        << "done; } > " << log << ".new\nmv " << log << ".new " << log << "\n";
    ::chmod(path.c_str(), 0755);
  }

  /// Why a program can't be started, ERROR_SUCCESS for one that was.
  static LONG Start(const char* program, const std::string& commandLine) {
    Text line = Utf16(commandLine);
    STARTUPINFOW start{};
    PROCESS_INFORMATION started{};
    const BOOL isStarted = CreateProcessW(W(program), WideBuffer(line), nullptr, nullptr, FALSE, 0,
                                          nullptr, nullptr, &start, &started);
    return isStarted != FALSE ? ERROR_SUCCESS : static_cast<LONG>(GetLastError());
  }
  /// What the program wrote, once it has.
  std::string Log() const {
    for (int i = 0; i < 500 && !std::filesystem::exists(log_); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    std::ostringstream text;
    text << std::ifstream(log_).rdbuf();
    return text.str();
  }

 private:
  std::filesystem::path bin_;
  std::filesystem::path log_;
  std::string path_;
};

TEST_F(StartTest, StartsWineWithExactlyTheArguments) {
  MakeProgram("wine");
  const int inherited = ::open("/dev/null", O_RDONLY);
  MakeFile("My Programs\\edit.exe");
  const std::string line =
      Folder() +
      "\\my programs\\EDIT.exe \"C:\\a & b;$(touch x)`id`.txt\" -x \"\" c:\\\u00E4\u65E5.txt";
  EXPECT_EQ(Start(nullptr, line), ERROR_SUCCESS);
  // Behind the arguments stand the prefix, and descriptors if any were handed on.
  const std::string prefix = posix::PrefixRoot().string();
  EXPECT_EQ(
      Log(),
      "C:\\scratch\\my programs\\EDIT.exe|C:\\a & b;$(touch x)`id`.txt|-x||c:\\\u00E4\u65E5.txt|" +
          prefix);
  ::close(inherited);
}

TEST_F(StartTest, AProgramNamedApartIsTheOneThatStarts) {
  MakeProgram("wine");
  MakeFile("Program.exe");
  const std::string program = MakeFile("Program Files\\\u65E5.exe");
  const std::string prefix = posix::PrefixRoot().string();
  EXPECT_EQ(Start(program.c_str(), "\"" + program + "\" \"a b\" c"), ERROR_SUCCESS);
  EXPECT_EQ(Log(), "C:\\scratch\\Program Files\\\u65E5.exe|a b|c|" + prefix);
}

TEST_F(StartTest, WhatCantBeStartedIsAnError) {
  const std::string program = MakeFile("a.exe");
  ::setenv("PATH", Host(Folder()).c_str(), 1);
  EXPECT_EQ(Start(nullptr, program), 2) << "no wine";
  MakeProgram("wine");
  EXPECT_EQ(Start(nullptr, Folder() + "\\none.exe"), 2);
  EXPECT_EQ(Start((Folder() + "\\none.exe").c_str(), program), 2) << "the command line's program";
  EXPECT_EQ(Start(nullptr, Folder()), 2) << "a folder";
  EXPECT_EQ(Start(nullptr, ""), 2);
}

TEST_F(StartTest, LinksAndNothingElseGoToTheDesktop) {
  MakeProgram("xdg-open");
  const auto answer = [](const char* link) {
    return reinterpret_cast<LONG_PTR>(
        ShellExecuteW(nullptr, W("open"), W(link), nullptr, nullptr, SW_SHOWNORMAL));
  };
  for (const char* refused : {"file:///etc/passwd", "/bin/sh", "-x", "http:", "mailto:", "",
                              "https://x y", "javascript:http://x"})
    EXPECT_LE(answer(refused), 32) << refused;
  EXPECT_GT(answer("Mailto:a@b.example"), 32);
  EXPECT_TRUE(Log().starts_with("Mailto:a@b.example|")) << Log();
}

}  // namespace
}  // namespace torvane::testing
