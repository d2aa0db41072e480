// Several programs change one file at the same time, a thousand commands in all, and every change
// is there in the end: for a hive and for a profile file.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <thread>
#include <vector>

#include "platform/posix/disk/forget.h"
#include "platform/posix/registry/registry.h"
#include "posix/hive_world.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr int kProcesses = 4;
constexpr int kCommands = 250;
constexpr int kForeignRewrites = 100;

/// In memory where the host has a folder there: what must be on the disk is told by other tests.
class SideBySideTest : public HiveWorld {
 protected:
  static void SetUpTestSuite() {
    if (fs::is_directory("/dev/shm")) setenv("TMPDIR", "/dev/shm", 1);
  }
  static void TearDownTestSuite() { unsetenv("TMPDIR"); }

  /// A command and its writing back, again as long as someone else has the file.
  static bool Persist(const std::function<bool()>& command) {
    for (int attempt = 0; attempt < 5000; ++attempt, std::this_thread::sleep_for(1ms)) {
      if (!command()) continue;
      while (!posix::WriteBackChanges().empty()) std::this_thread::sleep_for(1ms);
      return true;
    }
    return false;
  }
  static std::string Name(int process) { return "P" + std::to_string(process); }

  /// Each process sets its own numbers, while one more rewrites the file for every number of its.
  static void RunSideBySide(const std::function<bool(const std::string& process, int n)>& set,
                            const std::function<bool(int n)>& rewrite) {
    std::vector<pid_t> children;
    for (int process = 0; process <= kProcesses; ++process) {
      children.push_back(fork());
      if (children.back() != 0) continue;
      bool isWell = true;
      for (int n = 0; isWell && n < kCommands && process < kProcesses; ++n)
        isWell = Persist([&] { return set(Name(process), n); });
      for (int n = 0; isWell && n < kForeignRewrites && process == kProcesses; ++n) {
        isWell = rewrite(n);
        std::this_thread::sleep_for(2ms);
      }
      _exit(isWell ? 0 : 1);
    }
    for (const pid_t child : children) {
      int status = -1;
      waitpid(child, &status, 0);
      EXPECT_EQ(status, 0);
    }
    posix::ForgetWorld();
  }
};

TEST_F(SideBySideTest, FourProcessesAndWineLoseNoChangeOfAHive) {
  setenv("XDG_RUNTIME_DIR", (Prefix() / "run").c_str(), 1);
  const fs::path lockFile = ServerLock(Prefix() / "run/wine");
  Write(lockFile, "");
  const auto set = [](const std::string& process, int n) {
    return Set(process, std::to_string(n), "x") == ERROR_SUCCESS;
  };
  // Wine's server takes its lock, reads, and at its end writes a new file and renames it.
  RunSideBySide(set, [&lockFile](int n) {
    const int lock = open(lockFile.c_str(), O_RDWR);
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_len = 1;
    if (fcntl(lock, F_SETLKW, &range) != 0) return false;
    Replace(UserHive(),
            Read(UserHive()) + "\n[Wine\\\\" + std::to_string(n) + "] 1\n\"w\"=\"x\"\n");
    return close(lock) == 0;
  });
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_TRUE(posix::HiveProblems().empty());
  for (int process = 0; process < kProcesses; ++process)
    EXPECT_EQ(Texts(Name(process)).size(), std::size_t{kCommands}) << process;
  for (int n = 0; n < kForeignRewrites; ++n)
    EXPECT_EQ(Get("Wine\\" + std::to_string(n), "w"), "x\0"s) << n;
}

TEST_F(SideBySideTest, FourProcessesAndARewriterLoseNoChangeOfAProfileFile) {
  const std::string path = MakeFile("shared.ini", "; kept\r\n[Foreign]\r\n");
  const auto set = [&path](const std::string& process, int n) {
    return WritePrivateProfileStringW(W(process), W(std::to_string(n)), W("x"), W(path)) == TRUE;
  };
  // A program that replaces the whole file, and like us has its folder locked as it does so.
  RunSideBySide(set, [file = Host(path)](int n) {
    const int folder = open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY);
    if (flock(folder, LOCK_EX) != 0) return false;
    std::string bytes = Read(file);
    const std::string header = "[Foreign]\r\n";
    bytes.insert(bytes.find(header) + header.size(), std::to_string(n) + "=x\r\n");
    Replace(file, bytes);
    return close(folder) == 0;
  });
  Text value(8, u'\0');
  const auto isThere = [&](const std::string& section, int n) {
    return GetPrivateProfileStringW(W(section), W(std::to_string(n)), W(""), WideBuffer(value), 8,
                                    W(path)) == 1;
  };
  for (int process = 0; process < kProcesses; ++process)
    for (int n = 0; n < kCommands; ++n) EXPECT_TRUE(isThere(Name(process), n)) << process << n;
  for (int n = 0; n < kForeignRewrites; ++n) EXPECT_TRUE(isThere("Foreign", n)) << n;
  EXPECT_TRUE(FileBytes(path).starts_with("; kept\r\n"));
}

}  // namespace
}  // namespace torvane::testing
