// A hive and a profile file while others write them too: another writer at any point of a
// writing, files that vanish or come to be other ones, rights, and sizes that no memory holds.
#include <grp.h>
#include <sys/acl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/registry/registry.h"
#include "posix/hive_world.h"
#include "support/posix/traced_child.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kUser = 61'001;
constexpr uid_t kOther = 61'002;
const std::string kHive = kHeader + "\n[K] 1\n\"a\"=\"1\"\n\"b\"=\"1\"\n\n[O] 1\n\"o\"=\"1\"\n";
const std::string kIni = "; c\r\n[K]\r\na=1\r\nb=1\r\n\r\n[O]\r\no=1\r\n";

/// One of the two kinds of files, with the same keys "a" and "b" in K and "o" in O.
struct Store {
  const char* name;
  fs::path file;
  std::string before;
  std::function<bool()> erase;  ///< a in K
  std::function<bool()> add;    ///< n in K
  std::string o;                ///< the line of O
};

class SharedFileTest : public HiveWorld {
 protected:
  SharedFileTest() {
    const auto write = [](LPCWSTR key, LPCWSTR value) {
      return WritePrivateProfileStringW(u"K", key, value, u"shared.ini") == TRUE;
    };
    stores_ = {
        {"hive", UserHive(), kHive, [] { return Delete("K", "a") == ERROR_SUCCESS; },
         [] { return Set("K", "n", "1") == ERROR_SUCCESS; }, "\"o\"=\"1\"\n"},
        {"INI file", Host("C:\\windows") / "shared.ini", kIni,
         [write] { return write(u"a", nullptr); }, [write] { return write(u"n", u"1"); },
         "o=1\r\n"},
    };
    for (const Store& store : stores_) Reset(store);
  }
  static void Reset(const Store& store) {
    posix::ForgetWorld();
    fs::remove(store.file);
    Write(store.file, store.before);
  }
  /// Runs in a child that is a plain user, with the prefix its own.
  static bool AsUser(const std::function<bool()>& body) {
    const pid_t child = fork();
    if (child == 0) {
      const bool isUser = setgroups(0, nullptr) == 0 && setgid(kUser) == 0 && setuid(kUser) == 0;
      _exit(isUser && body() && !HasFailure() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0;
  }
  static bool Contains(const fs::path& file, std::string_view text) {
    return Read(file).find(text) != std::string::npos;
  }

  std::vector<Store> stores_;
};

TEST_F(SharedFileTest, AnotherWriterAtAnyCallLosesNothing) {
  const std::set<long> points = {SYS_openat, SYS_fsync, SYS_fsetxattr, SYS_renameat2, SYS_unlink};
  for (const Store& store : stores_) {
    std::string theirs = store.o;
    theirs[theirs.find('1')] = '2';
    const auto rewritten = [&] {
      std::string bytes = Read(store.file);
      return bytes.replace(bytes.find(store.o), store.o.size(), theirs);
    };
    const struct {
      const char* what;
      std::function<void()> write;
    } writers[] = {
        {"replaces it", [&] { Replace(store.file, rewritten()); }},
        {"writes in place, as many bytes",
         [&] { std::fstream(store.file, std::ios::in | std::ios::out) << rewritten(); }},
        {"does so and sets the time back",
         [&] {
           const auto time = fs::last_write_time(store.file);
           std::fstream(store.file, std::ios::in | std::ios::out) << rewritten();
           fs::last_write_time(store.file, time);
         }},
    };
    for (const auto& [what, write] : writers) {
      bool isOver = false;
      int point = 0;
      for (; !isOver; ++point) {
        SCOPED_TRACE(store.name + ", another program "s + what + " at " + std::to_string(point));
        Reset(store);
        TracedChild child([&] {
          if (!store.erase() || !posix::WriteBackChanges().empty()) _exit(1);
        });
        int seen = 0;
        isOver = true;
        for (auto call = child.next(); call; call = child.next()) {
          if (!points.contains(*call) || seen++ != point) continue;
          write();
          isOver = false;
        }
        ASSERT_TRUE(child.endedWell());
        const bool isErased = Read(store.file).find("a\"=") == std::string::npos &&
                              Read(store.file).find("\na=") == std::string::npos;
        ASSERT_TRUE(isErased) << Read(store.file);
        ASSERT_EQ(Contains(store.file, theirs), !isOver) << Read(store.file);
      }
      EXPECT_GT(point, 8);
    }
  }
}

TEST_F(SharedFileTest, WhatSomeoneTookAwayDoesNotComeBack) {
  for (const Store& store : stores_) {
    for (const auto& change : {store.erase, store.add}) {
      SCOPED_TRACE(store.name);
      Reset(store);
      ASSERT_TRUE(change());
      fs::remove(store.file);
      for (int i = 0; i < 2; ++i) {
        const auto failures = posix::WriteBackChanges();
        ASSERT_EQ(failures.size(), 1U);
        EXPECT_NE(failures[0].reason.find("taken it away"), std::string::npos);
        EXPECT_FALSE(store.add()) << "nor is another change made";
        EXPECT_FALSE(fs::exists(store.file));
      }
      Write(store.file, store.before);
      Save();
      EXPECT_NE(Read(store.file), store.before) << "the change was kept";
    }
  }
  ASSERT_EQ(Set("Software\\Halvex\\Torvane", "a", "1"), ERROR_SUCCESS);
  Save();
  fs::remove(Prefix() / "torvane.reg");
  ASSERT_EQ(Set("Software\\Halvex\\Torvane", "b", "1"), ERROR_SUCCESS);
  Save();
  EXPECT_TRUE(Contains(Prefix() / "torvane.reg", "\"b\"=\"1\"")) << "nobody misses our own";
}

TEST_F(SharedFileTest, ALinkThatIsTurnedMovesNoDeletion) {
  const fs::path one = Prefix() / "one";
  const fs::path two = Prefix() / "two";
  const fs::path link = Prefix() / "link";
  for (const fs::path& prefix : {one, two}) {
    fs::create_directories(prefix / "drive_c");
    Write(prefix / "user.reg", kHive);
    Write(prefix / "system.reg", kHeader);
  }
  fs::create_directory_symlink(one, link);
  const std::string old = Variable("WINEPREFIX");
  setenv("WINEPREFIX", link.c_str(), 1);
  posix::ForgetWorld();
  EXPECT_EQ(Get("K", "a"), "1\0"s);
  fs::remove(link);
  fs::create_directory_symlink(two, link);
  EXPECT_EQ(Delete("K", "a"), ERROR_SUCCESS);
  Save();
  EXPECT_EQ(Read(two / "user.reg"), kHive);
  EXPECT_FALSE(Contains(one / "user.reg", "\"a\""));

  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(Get("K", "b"), "1\0"s);
  // A folder that comes in the prefix's place is another one, before a change and behind it.
  fs::rename(one, Prefix() / "away");
  fs::rename(two, one);
  EXPECT_EQ(Delete("K", "b"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Delete("K", "b"), ERROR_SUCCESS) << "what stands there has been read now";
  fs::rename(one, two);
  fs::rename(Prefix() / "away", one);
  EXPECT_EQ(posix::WriteBackChanges().size(), 1U);
  EXPECT_TRUE(Contains(one / "user.reg", "\"b\""));
  setenv("WINEPREFIX", old.c_str(), 1);
}

/// Who may do what with a file: its group, its mode and its access list.
std::string RightsOf(const fs::path& file) {
  struct stat status {};
  EXPECT_EQ(stat(file.c_str(), &status), 0);
  acl_t list = acl_get_file(file.c_str(), ACL_TYPE_ACCESS);
  char* const text = acl_to_text(list, nullptr);
  std::ostringstream rights;
  rights << status.st_uid << ':' << status.st_gid << ' ' << std::oct << status.st_mode << '\n'
         << text;
  acl_free(text);
  acl_free(list);
  return rights.str();
}

void SetList(const fs::path& file, acl_type_t type, const std::string& text) {
  acl_t list = acl_from_text(text.c_str());
  EXPECT_EQ(acl_set_file(file.c_str(), type, list), 0) << std::strerror(errno);
  acl_free(list);
}

TEST_F(SharedFileTest, ANewFileGivesNobodyMoreThanTheOldOne) {
  std::string longList = "u::rw,g::r,o::-,m::rw";
  for (int user = 0; user < 300; ++user) longList += ",u:" + std::to_string(70'000 + user) + ":rw";
  const struct {
    const char* what;
    std::function<void(const fs::path&)> prepare;
  } cases[] = {
      {"the folder hands down a list",
       [](const fs::path& file) {
         chmod(file.c_str(), 0660);
         SetList(file.parent_path(), ACL_TYPE_DEFAULT, "u::rwx,g::r,o::r,m::rwx,u:70001:rwx");
       }},
      {"a list longer than a page",
       [&](const fs::path& file) { SetList(file, ACL_TYPE_ACCESS, longList); }},
      {"bits beside the rights", [](const fs::path& file) { chmod(file.c_str(), 02640); }},
  };
  for (const Store& store : stores_) {
    for (const auto& [what, prepare] : cases) {
      SCOPED_TRACE(store.name + ", "s + what);
      Reset(store);
      prepare(store.file);
      const std::string note(1000, 'n');
      ASSERT_EQ(setxattr(store.file.c_str(), "user.note", note.data(), note.size(), 0), 0);
      const std::string rights = RightsOf(store.file);
      ASSERT_TRUE(store.erase());
      Save();
      EXPECT_NE(Read(store.file), store.before);
      EXPECT_EQ(RightsOf(store.file), rights);
      std::string kept(4096, '\0');
      const ssize_t size = getxattr(store.file.c_str(), "user.note", kept.data(), kept.size());
      EXPECT_EQ(kept.substr(0, size > 0 ? static_cast<std::size_t>(size) : 0), note);
      acl_delete_def_file(store.file.parent_path().c_str());
    }
  }
}

TEST_F(SharedFileTest, APlainUserKeepsNoForeignGroupAndReplacesNoForeignFile) {
  if (geteuid() != 0) return;  // only root makes files that are someone else's
  const struct {
    mode_t before;
    mode_t after;
  } groups[] = {{0664, 0604}, {0640, 0600}, {0646, 0604}, {0606, 0600}};
  for (const Store& store : stores_) {
    SCOPED_TRACE(store.name);
    for (const fs::path& place : {Prefix(), Prefix() / "drive_c", store.file.parent_path()})
      EXPECT_EQ(chown(place.c_str(), kUser, kUser), 0);
    for (const auto& [before, after] : groups) {
      SCOPED_TRACE(before);
      Reset(store);
      EXPECT_EQ(chown(store.file.c_str(), kUser, kOther), 0);
      chmod(store.file.c_str(), before);
      EXPECT_TRUE(AsUser([&] { return store.erase() && posix::WriteBackChanges().empty(); }));
      struct stat status {};
      EXPECT_EQ(stat(store.file.c_str(), &status), 0);
      EXPECT_EQ(status.st_gid, kUser);
      EXPECT_EQ(status.st_mode & 07777U, after);
    }
    Reset(store);
    EXPECT_EQ(chown(store.file.c_str(), kOther, kOther), 0);
    chmod(store.file.c_str(), 0666);
    EXPECT_TRUE(AsUser([&] {
      return !store.erase() && !posix::ChangesWait() &&
             (store.file != UserHive() ||
              posix::TakeRefusalNote().find(std::to_string(kOther)) != std::string::npos);
    }));
    EXPECT_EQ(Read(store.file), store.before);
    ASSERT_TRUE(store.erase()) << "root keeps the owner";
    Save();
    EXPECT_TRUE(RightsOf(store.file).starts_with("61002:61002 100666"));
  }
}

/// A key and a section whose values are written in forms of their own.
struct Forms {
  fs::path file;
  std::string before;
  std::string other;  ///< a line of another key or section
  std::function<void(const char* name)> erase;
  std::function<void(const char* name)> restore;  ///< as it was
};

TEST_F(SharedFileTest, WhatComesBackHasTheLinesThatItHad) {
  const auto write = [](const char* key, const char* value) {
    WritePrivateProfileStringW(u"K", W(key), W(value), u"shared.ini");
  };
  const Forms forms[] = {
      {UserHive(),
       kHeader + "\n[K] 1\n#time=1\n; one\n\"a\"=hex(1):31,\\\n  00,00,00\n; two\n\"B\" = "
                 "dword:1 ; b\n\n[O] 1\n\"o\"=\"1\"\n",
       "\"o\"=\"1\"", [](const char* name) { Delete("K", name); },
       [](const char* name) {
         const bool isA = name == "a"s;
         SetBytes("K", name, isA ? REG_SZ : REG_DWORD, isA ? "1\0\0\0"s : "\1\0\0\0"s);
       }},
      {stores_[1].file, "[K] ; k\r\n; one\r\na = 1\r\n\r\n; two\r\nB=\t2 \r\n\r\n[O]\r\no=1", "o=1",
       [write](const char* key) { write(key, nullptr); },
       [write](const char* key) { write(key, key == "a"s ? "1" : "2"); }},
  };
  const auto withoutTime = [](const std::string& bytes) {
    return std::regex_replace(bytes, std::regex("(K\\] |#time=)[0-9a-f]+"), "$1");
  };
  for (const Forms& form : forms) {
    SCOPED_TRACE(form.file);
    posix::ForgetWorld();
    Replace(form.file, form.before);
    const auto stamp = posix::StampOf(form.file);
    const auto restoreAll = [&] {
      for (const char* name : {"a", "B"}) form.erase(name);
      for (const char* name : {"a", "B"}) form.restore(name);
    };
    restoreAll();
    Save();
    EXPECT_EQ(posix::StampOf(form.file), stamp) << "what ends as it began isn't written";
    std::string before = form.before;
    for (int turn = 0; turn < 3; ++turn) {
      for (const char* name : {"a", "B"}) form.erase(turn == 1 ? name : "B");
      Save();
      EXPECT_EQ(Read(form.file).find("two") != std::string::npos, true);
      EXPECT_NE(withoutTime(Read(form.file)), withoutTime(before));
      if (turn == 2) {
        std::string theirs = Read(form.file);
        theirs[theirs.find(form.other) + form.other.find('1')] = '7';
        before[before.find(form.other) + form.other.find('1')] = '7';
        Replace(form.file, theirs);
      }
      restoreAll();
      Save();
      EXPECT_EQ(withoutTime(Read(form.file)), withoutTime(before));
    }
    form.erase("a");
    form.restore("a");
    Save();
    EXPECT_NE(withoutTime(Read(form.file)), withoutTime(before))
        << "another order is another state";
  }
}

TEST_F(SharedFileTest, NamesThatAreMeantToFallTogetherCostWhatOthersCost) {
  // Each pair of units with the highest bit turned in both leaves the lower half of a product as it
  // is, whatever was before it.
  constexpr int kNames = 1 << 14;
  const auto seconds = [](char16_t turned) {
    std::string hive = kHeader + "\n[K] 1\n";
    for (int n = 0; n < kNames; ++n) {
      std::ostringstream name;
      for (int bit = 0; bit < 14; ++bit) {
        const int unit = 0x4E00 + ((n >> bit & 1) != 0 ? turned : 0);
        name << "\\x" << std::hex << unit << "\\x" << unit;
      }
      hive += "\"" + name.str() + "\"=\"\"\n";
    }
    Replace(UserHive(), hive);
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(Texts("K").size(), static_cast<std::size_t>(kNames));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
  };
  const double usual = seconds(0x0101);
  EXPECT_LT(seconds(0x8000), usual * 2 + 0.1);
}

TEST_F(SharedFileTest, SizesThatNoMemoryHoldsAreRefusedByName) {
  constexpr off_t kSize = off_t{5} << 40;
  for (const Store& store : stores_) {
    SCOPED_TRACE(store.name);
    ASSERT_EQ(truncate(store.file.c_str(), kSize), 0);
    EXPECT_FALSE(store.erase());
    EXPECT_EQ(fs::file_size(store.file), static_cast<std::uintmax_t>(kSize));
  }
  const std::vector<std::string> problems = posix::HiveProblems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_NE(problems[0].find("user.reg has 5.0 TB"), std::string::npos) << problems[0];
  Reset(stores_[0]);
  ASSERT_TRUE(stores_[0].erase());
  Write(Prefix() / "wineserver", "x");
  ASSERT_EQ(truncate((Prefix() / "wineserver").c_str(), kSize), 0);
  const auto failures = posix::WriteBackChanges();
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_NE(failures[0].reason.find("wineserver has 5.0 TB"), std::string::npos)
      << failures[0].reason;
}

}  // namespace
}  // namespace torvane::testing
