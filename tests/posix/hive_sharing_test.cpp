// What the layer promises where others use the hives too: Wine, other programs, a full disk, a
// writer that was killed; and where the hives lie.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include "platform/posix/disk/forget.h"
#include "platform/posix/prefix/wine_server.h"
#include "platform/posix/registry/registry.h"
#include "posix/hive_world.h"
#include "support/posix/other_process.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;

class HiveSharingTest : public HiveWorld {
 protected:
  HiveSharingTest() { Replace(UserHive(), kBefore); }

  /// Two users, neither of them this one.
  static constexpr uid_t kOwner = 61'001;
  static constexpr uid_t kOther = 61'002;

  static inline const std::string kBefore =
      kHeader + "\n[K] 1\n\"a\"=\"1\"\n\n[L] 1\n\"l\"=\"1\"\n";
};

/// A child process that stands in for a wineserver.
class LockHolder : public OtherProcess {
 public:
  explicit LockHolder(const fs::path& lock) : OtherProcess([&] { return LockAsServer(lock); }) {}
};

TEST_F(HiveSharingTest, NothingIsChangedWhileWineRuns) {
  setenv("XDG_RUNTIME_DIR", (Prefix() / "run").c_str(), 1);
  const fs::path debian = "/tmp" / Prefix().filename().concat("-wine");
  Write(Prefix() / "wineserver", debian.filename().string());
  for (const fs::path& root : {Prefix() / "run/wine", debian}) {
    SCOPED_TRACE(root);
    Replace(UserHive(), kBefore);
    const fs::path lock = ServerLock(root);
    {
      const LockHolder server(lock);
      EXPECT_EQ(Get("K", "a"), "1\0"s);
      EXPECT_EQ(Set("K", "a", "2"), ERROR_SHARING_VIOLATION);
      const std::string note = posix::TakeRefusalNote();
      EXPECT_NE(note.find(Prefix().string()), std::string::npos);
      EXPECT_NE(note.find("wineserver -k"), std::string::npos);
      EXPECT_EQ(posix::TakeRefusalNote(), "");
      EXPECT_EQ(Set("New", "a", "2"), ERROR_SHARING_VIOLATION);
      EXPECT_EQ(Delete("K", "a"), ERROR_SHARING_VIOLATION);
      EXPECT_EQ(Set("software\\HALVEX\\Torvane\\Paths", "a", "2"), ERROR_SUCCESS);
      Save();
      EXPECT_EQ(Read(UserHive()), kBefore);
      EXPECT_NE(Read(Prefix() / "torvane.reg").find("\"a\"=\"2\""), std::string::npos);
    }
    EXPECT_EQ(Set("K", "a", "3"), ERROR_SUCCESS);
    {
      const LockHolder server(lock);
      const auto failures = posix::WriteBackChanges();
      ASSERT_EQ(failures.size(), 1U);
      EXPECT_EQ(failures.front().kind, posix::WriteFailureKind::HeldByUse);
      EXPECT_EQ(failures.front().path, UserHive());
      EXPECT_EQ(Read(UserHive()), kBefore);
      EXPECT_EQ(Delete("K", "a"), ERROR_SHARING_VIOLATION) << "though changes wait already";
    }
    Save();
    EXPECT_EQ(Get("K", "a"), "3\0"s);
    EXPECT_NE(Read(UserHive()).find("\"a\"=\"3\""), std::string::npos);
    {
      const posix::WineServerHold hold(Prefix());
      EXPECT_FALSE(LockHolder(lock).stands) << "a server can't start while we write";
    }
    EXPECT_TRUE(LockHolder(lock).stands);
  }
  fs::remove_all(debian);
  unsetenv("XDG_RUNTIME_DIR");
}

TEST_F(HiveSharingTest, ReadOnlyFilesAndFoldersRefuseAtOnce) {
  const struct {
    fs::path path;
    mode_t mode;
    mode_t usual;
    LSTATUS own;
  } cases[] = {
      {UserHive(), 0444, 0644, ERROR_SUCCESS},
      {Prefix(), 0555, 0755, ERROR_ACCESS_DENIED},
  };
  for (const auto& [path, mode, usual, own] : cases) {
    SCOPED_TRACE(path);
    chmod(path.c_str(), mode);
    EXPECT_EQ(Set("K", "a", "2"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Delete("K", "a"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Set("Software\\Halvex\\Torvane", "a", "2"), own);
    EXPECT_EQ(Get("K", "a"), "1\0"s);
    Save();
    EXPECT_EQ(Read(UserHive()), kBefore);
    EXPECT_NE(posix::TakeRefusalNote().find("Permission denied"), std::string::npos);
    chmod(path.c_str(), usual);
  }
  EXPECT_EQ(Set("K", "a", "2"), ERROR_SUCCESS);
}

TEST_F(HiveSharingTest, ChangesGoOnTopOfWhatOthersWrote) {
  const std::string other = "\n[O] 1\n\"o\"=\"9\"\n";
  const struct {
    const char* what;
    std::string theirs;
    std::function<void()> ours;
    std::map<std::string, std::string> k;
  } cases[] = {
      {"other keys", kBefore + other, [] { Set("K", "n", "2"); }, {{"a", "1"}, {"n", "2"}}},
      {"the same key",
       kHeader + "\n[K] 2\n\"t\"=\"5\"\n\"a\"=\"6\"\n" + other,
       [] { Set("K", "A", "2"); },
       {{"t", "5"}, {"a", "2"}}},
      {"a deleted value is gone already",
       kHeader + "\n[K] 2\n\"t\"=\"5\"\n" + other,
       [] { Delete("K", "a"); },
       {{"t", "5"}}},
      {"deleted and set again",
       kHeader + "\n[K] 2\n\"a\"=\"5\"\n\"t\"=\"5\"\n" + other,
       [] { Delete("K", "a"), Set("K", "a", "7"); },
       {{"t", "5"}, {"a", "7"}}},
      {"the key is gone, a value is new",
       kHeader + other,
       [] { Set("K", "n", "2"); },
       {{"n", "2"}}},
  };
  for (const auto& [what, theirs, ours, k] : cases) {
    SCOPED_TRACE(what);
    Replace(UserHive(), kBefore);
    ours();
    Replace(UserHive(), theirs);
    Save();
    EXPECT_EQ(Texts("K"), k);
    EXPECT_EQ(Texts("O"), (std::map<std::string, std::string>{{"o", "9"}}));
  }
  Replace(UserHive(), kBefore);
  Delete("K", "a");
  Replace(UserHive(), kHeader + other);
  Save();
  EXPECT_EQ(Read(UserHive()), kHeader + other) << "a key that is gone stays gone";

  Replace(UserHive(), kBefore);
  Set("K", "n", "2");
  Replace(UserHive(), "rubbish\n");
  ASSERT_EQ(posix::WriteBackChanges().size(), 1U);
  EXPECT_EQ(Read(UserHive()), "rubbish\n");
  Replace(UserHive(), kBefore);
  Save();
  EXPECT_EQ(Get("K", "n"), "2\0"s) << "the change was kept";
}

TEST_F(HiveSharingTest, OutsideChangesAreSeen) {
  HKEY open = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, W("K"), 0, KEY_QUERY_VALUE, &open), ERROR_SUCCESS);
  Replace(UserHive(), kHeader + "\n[M] 1\n\"m\"=\"1\"\n\n[K] 1\n\"a\"=\"2\"\n");
  EXPECT_EQ(Get("K", "a"), "2\0"s);
  Write(UserHive(), kHeader + "\n[K] 1\n\"a\"=\"in place\"\n");
  EXPECT_EQ(Get("K", "a"), "in place\0"s);
  DWORD size = 0;
  EXPECT_EQ(RegQueryValueExW(open, W("a"), nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
  EXPECT_EQ(size, 18U);
  fs::remove(UserHive());
  EXPECT_EQ(Get("K", "a"), std::nullopt);
  EXPECT_EQ(RegQueryValueExW(open, W("a"), nullptr, nullptr, nullptr, &size), ERROR_KEY_DELETED);
  fs::create_symlink("elsewhere.reg", UserHive());
  Write(Prefix() / "elsewhere.reg", kBefore);
  EXPECT_EQ(Get("K", "a"), "1\0"s);
  Write(Prefix() / "third.reg", kHeader + "\n[K] 1\n\"a\"=\"3\"\n");
  fs::remove(UserHive());
  fs::create_symlink("third.reg", UserHive());
  EXPECT_EQ(Get("K", "a"), "3\0"s);
  posix::ForgetWorld();
  EXPECT_EQ(RegCloseKey(open), ERROR_INVALID_HANDLE);
}

TEST_F(HiveSharingTest, OnlyWhatAWriterLeftIsTakenFromTheTemporaryName) {
  // Only root can give files away; for others a pipe stands in for what isn't theirs.
  const bool isRoot = geteuid() == 0;
  const fs::path temporary = Prefix() / ".user.reg.torvane";
  const fs::path victim = Prefix() / "victim";
  const auto isThere = [&] { return fs::exists(fs::symlink_status(temporary)); };
  const auto give = [&](const fs::path& file, uid_t user) {
    EXPECT_TRUE(!isRoot || chown(file.c_str(), user, user) == 0);
  };
  const struct {
    const char* what;
    bool isLeftover;
    std::function<void()> put;
  } cases[] = {
      {"a killed writer's file", true, [&] { Write(temporary, "half"); }},
      {"the same with the rights of the old file", true,
       [&] {
         Write(temporary, "half");
         give(temporary, kOwner);
       }},
      {"a link to a file", false, [&] { fs::create_symlink(victim, temporary); }},
      {"a link to nowhere", false, [&] { fs::create_symlink("nowhere", temporary); }},
      {"a second name of a file", false, [&] { fs::create_hard_link(victim, temporary); }},
      {"a folder", false, [&] { fs::create_directory(temporary); }},
      {"another user's file", false,
       [&] {
         EXPECT_EQ(mknod(temporary.c_str(), (isRoot ? S_IFREG : S_IFIFO) | 0600U, 0), 0);
         give(temporary, kOther);
       }},
  };
  for (const auto& [what, isLeftover, put] : cases) {
    SCOPED_TRACE(what);
    posix::ForgetWorld();
    Replace(UserHive(), kBefore);
    Write(victim, "mine");
    give(UserHive(), kOwner);
    put();
    EXPECT_EQ(Get("K", "a"), "1\0"s);
    EXPECT_EQ(isThere(), !isLeftover) << "what was left over goes on loading";
    if (!isLeftover) {
      EXPECT_EQ(Set("K", "a", "2"), ERROR_ACCESS_DENIED);
      EXPECT_NE(posix::TakeRefusalNote().find(temporary.string() + " is in the way"),
                std::string::npos);
      fs::remove(temporary);
    }
    EXPECT_EQ(Set("K", "a", "2"), ERROR_SUCCESS);
    put();
    EXPECT_EQ(posix::WriteBackChanges().size(), isLeftover ? 0U : 1U);
    EXPECT_EQ(isThere(), !isLeftover);
    EXPECT_EQ(Read(UserHive()) == kBefore, !isLeftover);
    EXPECT_EQ(Read(victim), "mine");
    fs::remove(temporary);
    fs::remove(victim);
    Save();
    EXPECT_NE(Read(UserHive()).find("\"a\"=\"2\""), std::string::npos);
  }
}

TEST_F(HiveSharingTest, KeepsModeAndLink) {
  ASSERT_EQ(Set("K", "a", "2"), ERROR_SUCCESS);
  chmod(UserHive().c_str(), 0640);
  Save();
  struct stat status {};
  ASSERT_EQ(stat(UserHive().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);

  fs::create_directory(Prefix() / "dotfiles");
  fs::rename(UserHive(), Prefix() / "dotfiles/wine.reg");
  fs::create_symlink("dotfiles/wine.reg", UserHive());
  ASSERT_EQ(Set("K", "a", "5"), ERROR_SUCCESS);
  Save();
  EXPECT_TRUE(fs::is_symlink(UserHive()));
  EXPECT_NE(Read(Prefix() / "dotfiles/wine.reg").find("\"a\"=\"5\""), std::string::npos);

  fs::remove(Prefix() / "dotfiles/wine.reg");
  EXPECT_EQ(Get("K", "a"), std::nullopt);
  EXPECT_EQ(Set("K", "a", "6"), ERROR_REGISTRY_CORRUPT) << "the link leads nowhere";
  fs::remove(UserHive());
  fs::create_directory(UserHive());
  EXPECT_EQ(Set("K", "a", "6"), ERROR_REGISTRY_CORRUPT);
  EXPECT_EQ(posix::HiveProblems().size(), 1U);
}

TEST_F(HiveSharingTest, MissingHiveIsMadeWithTheArchitectureOfThePrefix) {
  fs::remove(UserHive());
  Write(Prefix() / "system.reg", "WINE REGISTRY Version 2\n;; x\n\n#arch=win32\n");
  EXPECT_EQ(Get("K", "a"), std::nullopt);
  EXPECT_TRUE(posix::HiveProblems().empty());
  ASSERT_EQ(Set("K", "a", "1"), ERROR_SUCCESS);
  EXPECT_FALSE(fs::exists(UserHive()));
  Save();
  EXPECT_TRUE(Read(UserHive()).starts_with("WINE REGISTRY Version 2\n"));
  EXPECT_NE(Read(UserHive()).find("\n#arch=win32\n\n[K] "), std::string::npos);
}

TEST_F(HiveSharingTest, ThePrefixIsFoundOrMade) {
  const std::string old = Variable("WINEPREFIX");
  const std::string home = Variable("HOME");
  const fs::path scratch = Prefix() / "home";
  const auto rootWith = [](const std::string& prefix) {
    setenv("WINEPREFIX", prefix.c_str(), 1);
    posix::ForgetWorld();
    try {
      return posix::PrefixRoot().string();
    } catch (const posix::PrefixError& error) {
      EXPECT_NE(std::string(error.what()).find(prefix), std::string::npos);
      return "error"s;
    }
  };
  EXPECT_EQ(rootWith(old), old);
  EXPECT_EQ(rootWith(old + "/missing"), "error");
  EXPECT_EQ(rootWith(old + "/drive_c"), "error");
  setenv("HOME", scratch.c_str(), 1);
  setenv("XDG_DATA_HOME", (scratch / "data").c_str(), 1);
  const fs::path made = scratch / "data/torvane/prefix";
  EXPECT_EQ(rootWith(""), made);
  EXPECT_TRUE(fs::is_directory(made / "dosdevices/c:/windows/system32"));
  EXPECT_EQ(fs::read_symlink(made / "dosdevices/z:"), "/");
  EXPECT_TRUE(posix::HiveProblems().empty());
  EXPECT_EQ(Set("K", "a", "1"), ERROR_SUCCESS);
  Save();
  EXPECT_EQ(rootWith(""), made);
  EXPECT_EQ(Get("K", "a"), "1\0"s) << "a second start finds what the first left";
  fs::create_directories(scratch / ".wine/drive_c");
  EXPECT_EQ(rootWith(""), scratch / ".wine");
  unsetenv("XDG_DATA_HOME");
  setenv("HOME", home.c_str(), 1);
  EXPECT_EQ(rootWith(old), old);
}

}  // namespace
}  // namespace torvane::testing
