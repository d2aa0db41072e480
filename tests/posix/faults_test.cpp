// What is left of a list's file when the program is killed, or the system fails it, while it writes
// a delete command back: the whole old file or the whole new one, and the changes to be tried
// again.
#include <sys/mman.h>
#include <sys/syscall.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

#include "editing/delete_commands.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/disk/write_back.h"
#include "readers/basListFill.h"
#include "support/list_window.h"
#include "support/posix/traced_child.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

const std::string kHive =
    "WINE REGISTRY Version 2\n;; All keys relative to REGISTRY\\\\User\n\n#arch=win64\n\n"
    "[Software\\\\Before] 1700000000\n#time=1da0000000000\n\"kept\"=hex:01,02\n\n"
    "[Software\\\\TorvaneTest\\\\List] 1700000000\n#time=1da0000000000\n"
    "\"File1\"=\"C:\\\\one.txt\"\n\"File2\"=\"C:\\\\two.txt\"\n\"File3\"=\"C:\\\\three.txt\"\n\n"
    "[Software\\\\Zuletzt] 1700000000\n@=\"x\"\n";
const std::string kIni =
    "; kept\r\n[List]\r\nFile0=C:\\one.txt\r\nFile1=C:\\two.txt\r\nFile2=C:\\three.txt\r\n\r\n"
    "[Other]\r\nx=1\r\n";

/// A list in a file of the prefix.
struct Store {
  const char* name;
  fs::path file;
  std::string before;
  void (*reader)(const MruEntry&, List&);
  MruEntry entry;
};

/// What a child leaves for its parent to see.
struct Notes {
  bool writing = false;  ///< it is writing back for the first time
  std::array<char, 256> reason{};
  bool isReplaced = false;        ///< the failure says that the new file stands
  std::array<char, 4096> file{};  ///< the file's bytes after the first try
  std::size_t stillFailing = 0;   ///< after the second
};

/// Memory that a forked child shares.
class SharedNotes {
 public:
  SharedNotes()
      : notes_(static_cast<Notes*>(mmap(nullptr, sizeof(Notes), PROT_READ | PROT_WRITE,
                                        MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}
  SharedNotes(const SharedNotes&) = delete;
  SharedNotes& operator=(const SharedNotes&) = delete;
  ~SharedNotes() { munmap(notes_, sizeof(Notes)); }
  Notes* operator->() const { return notes_; }
  void clear() { *notes_ = {}; }

 private:
  Notes* notes_;
};

class FaultsTest : public ListWorld {
 protected:
  FaultsTest() {
    const fs::path prefix = Host("C:\\").parent_path().parent_path();
    MruEntry ini = ListEntry("23");
    ini.Location = u"faults.ini";
    ini.Section = u"List";
    ini.FirstIndex = u"0";
    MruEntry registry = ListEntry("0");
    registry.CountValue = kNone;
    stores_ = {{"registry", prefix / "user.reg", kHive, FillRegistryList, registry},
               {"INI file", Host("C:\\windows\\faults.ini"), kIni, FillWinIniList, ini}};
  }

  static void Put(const fs::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
  }
  /// The file's bytes, the times of keys left out.
  static std::string Bytes(const fs::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return WithoutTimes(bytes.str());
  }
  static std::string WithoutTimes(const std::string& bytes) {
    static const std::regex times("(#time=|\\] )[0-9a-f]+");
    return std::regex_replace(bytes, times, "$1");
  }
  static std::set<std::string> Names(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
    return names;
  }

  void Read(const Store& store) { FillEntry(store.reader, store.entry); }
  /// Deletes the second of the three entries; the change waits to be written.
  void DeleteOne(const Store& store) {
    Read(store);
    ASSERT_EQ(list_.ListItems().Count(), 3);
    list_.ListItems()(2).Selected(true);
    DeleteSelectedEntries({list_, status_, tree_, undo_});
  }
  /// The store with its old content, unread, and what the command makes of it.
  std::string Prepare(const Store& store) {
    Put(store.file, store.before);
    posix::ForgetWorld();
    DeleteOne(store);
    EXPECT_TRUE(posix::WriteBackChanges().empty());
    std::string after = Bytes(store.file);
    EXPECT_NE(after, WithoutTimes(store.before));
    Reset(store);
    return after;
  }
  void Reset(const Store& store) {
    fs::remove_all(store.file);
    Put(store.file, store.before);
    written_ = std::chrono::system_clock::now();
    posix::ForgetWorld();
  }

  Tree tree_{form_, u"Tree"};
  UndoStore undo_;
  std::vector<Store> stores_;
  std::chrono::system_clock::time_point written_;
};

TEST_F(FaultsTest, KilledAtAnyCallLeavesTheOldFileOrTheNewOne) {
  for (const Store& store : stores_) {
    SCOPED_TRACE(store.name);
    const std::string after = Prepare(store);
    const std::set<std::string> names = Names(store.file.parent_path());
    int olds = 0;
    int news = 0;
    for (int calls = 0, ended = 0; ended == 0; ++calls) {
      SCOPED_TRACE("killed before call " + std::to_string(calls));
      if (Bytes(store.file) != WithoutTimes(store.before)) Reset(store);
      posix::ForgetWorld();
      // The same calls come each time if the file's stamp is old enough to be trusted.
      std::this_thread::sleep_until(written_ + 30ms);
      {
        TracedChild child([&] {
          DeleteOne(store);
          posix::WriteBackChanges();
        });
        for (int call = 0; call <= calls && ended == 0; ++call) ended = child.next() ? 0 : 1;
      }
      const std::string bytes = Bytes(store.file);
      ASSERT_TRUE(bytes == after || bytes == WithoutTimes(store.before)) << bytes;
      ++(bytes == after ? news : olds);
      // The next run reads the list, and with that puts away what was left.
      Read(store);
      ASSERT_EQ(list_.ListItems().Count(), bytes == after ? 2 : 3);
      ASSERT_EQ(Names(store.file.parent_path()), names);
    }
    EXPECT_GT(olds, 10);
    EXPECT_GT(news, 1);
  }
}

enum class Told {
  Always,
  Never,     ///< writing goes on all the same
  AsNeeded,  ///< not where the call only looks for a Wine that may run
};

/// A call of the write-back and how it goes wrong.
struct Fault {
  long call;
  int error;  ///< 0: only a part is written
  Told told = Told::Always;
};

const Fault kFaults[] = {
    {SYS_write, ENOSPC},
    {SYS_write, EIO},
    {SYS_write, EDQUOT},
    {SYS_write, EINTR, Told::Never},
    {SYS_write, 0, Told::Never},
    {SYS_fsync, EIO},
    {SYS_fsync, ENOSPC},
    {SYS_renameat2, EROFS},
    {SYS_renameat2, EACCES},
    {SYS_renameat2, EIO},
    {SYS_renameat2, ENOSPC},
    {SYS_renameat2, EINVAL, Told::Never},
    {SYS_openat, EACCES, Told::AsNeeded},
    {SYS_openat, EROFS, Told::AsNeeded},
    {SYS_openat, EMFILE, Told::AsNeeded},
    {SYS_access, EROFS},
    {SYS_access, EACCES},
    {SYS_fsetxattr, EPERM},
    {SYS_fsetxattr, EIO},
    {SYS_fsetxattr, ENOTSUP, Told::Never},
    {SYS_flock, ENOLCK},
    {SYS_flock, EINTR, Told::Never},
};

TEST_F(FaultsTest, AFailingCallIsToldAndTheChangesAreTriedAgain) {
  SharedNotes notes;
  for (const Store& store : stores_) {
    const std::string after = Prepare(store);
    const std::set<std::string> names = Names(store.file.parent_path());
    std::map<long, int> tellings;
    // Each call of that number in turn, until there are no more of them.
    for (const Fault& fault : kFaults) {
      for (int turn = 0, wanted = 1; turn < wanted; ++turn) {
        SCOPED_TRACE(std::string(store.name) + ", call " + std::to_string(fault.call) + ", " +
                     std::strerror(fault.error) + ", turn " + std::to_string(turn));
        Reset(store);
        notes.clear();
        TracedChild child([&] {
          DeleteOne(store);
          notes->writing = true;
          const auto failures = posix::WriteBackChanges();
          notes->writing = false;
          if (!failures.empty()) {
            failures[0].reason.copy(notes->reason.data(), 255);
            notes->isReplaced = failures[0].kind == posix::WriteFailureKind::NewStands ||
                                failures[0].kind == posix::WriteFailureKind::MayNotLast;
          }
          Bytes(store.file).copy(notes->file.data(), 4095);
          notes->stillFailing = posix::WriteBackChanges().size();
        });
        bool isRenamed = false;
        int seen = 0;
        for (auto call = child.next(); call; call = child.next()) {
          if (!notes->writing) continue;
          if (*call == fault.call && seen++ == turn) {
            wanted = turn + 2;
            fault.error == 0 ? child.cutWrite(1) : child.fail(fault.error);
          } else if (*call == SYS_renameat2) {
            isRenamed = true;
          }
        }
        ASSERT_TRUE(child.endedWell());
        if (wanted != turn + 2) {
          EXPECT_GT(turn, 0) << "no such call";
          continue;
        }
        const std::string reason = notes->reason.data();
        EXPECT_TRUE(fault.told == Told::AsNeeded || reason.empty() == (fault.told == Told::Never));
        EXPECT_TRUE(reason.empty() || reason.find(std::strerror(fault.error)) != reason.npos);
        tellings[fault.call] += reason.empty() ? 0 : 1;
        // Only what keeps the new name on the disk comes behind the renaming.
        const bool isNew = isRenamed || reason.empty();
        EXPECT_EQ(notes->isReplaced, isRenamed && !reason.empty());
        EXPECT_EQ(notes->file.data(), isNew ? after : WithoutTimes(store.before));
        EXPECT_EQ(notes->stillFailing, 0U);
        EXPECT_EQ(Bytes(store.file), after);
        EXPECT_EQ(Names(store.file.parent_path()), names);
      }
    }
    EXPECT_GE(tellings[SYS_openat], 6) << "the folder and the new file, three errors";
  }
}

TEST_F(FaultsTest, WhatStandsInTheFilesPlaceIsLeftAloneAndTold) {
  struct Obstacle {
    const char* reason;
    std::function<void(const fs::path&)> put;
  };
  const Obstacle obstacles[] = {
      {"Is a directory", [](const fs::path& file) { fs::create_directories(file / "inner"); }},
      {"No such file or directory",
       [](const fs::path& file) { fs::create_symlink("/nonexistent/user.reg", file); }},
      {"Permission denied",
       [](const fs::path& file) {
         Put(file, "WINE REGISTRY Version 2\n");
         fs::permissions(file, fs::perms::owner_read);
       }},
  };
  for (const Store& store : stores_) {
    const std::string after = Prepare(store);
    for (const Obstacle& obstacle : obstacles) {
      SCOPED_TRACE(std::string(store.name) + ", " + obstacle.reason);
      Reset(store);
      DeleteOne(store);
      fs::remove(store.file);
      obstacle.put(store.file);
      const auto kind = fs::symlink_status(store.file).type();
      const auto failures = posix::WriteBackChanges();
      ASSERT_EQ(failures.size(), 1U);
      EXPECT_EQ(failures[0].reason, obstacle.reason);
      EXPECT_EQ(fs::symlink_status(store.file).type(), kind);
      fs::remove_all(store.file);
      Put(store.file, store.before);
      EXPECT_TRUE(posix::WriteBackChanges().empty());
      EXPECT_EQ(Bytes(store.file), after);
    }
  }
}

}  // namespace
}  // namespace torvane::testing
