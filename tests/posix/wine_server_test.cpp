// A wineserver is seen wherever it runs, and what looks like one isn't taken for it.
#include "platform/posix/prefix/wine_server.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <functional>
#include <list>
#include <memory>

#include "posix/hive_world.h"
#include "support/posix/other_process.h"
#include "support/posix/traced_child.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;

class WineServerTest : public HiveWorld {
 protected:
  WineServerTest() { setenv("XDG_RUNTIME_DIR", (Prefix() / "run").c_str(), 1); }
  ~WineServerTest() override { unsetenv("XDG_RUNTIME_DIR"); }

  /// Stands in a server's folder below `root`.
  static fs::path Enter(const fs::path& root) {
    const fs::path lock = ServerLock(root);
    fs::current_path(lock.parent_path());
    return lock;
  }
};

TEST_F(WineServerTest, IsSeenWhereverItRuns) {
  const fs::path elsewhere = Prefix() / "elsewhere";
  const fs::path app = Prefix() / "run/.flatpak/org.example.App";
  const std::string user = ".wine-" + std::to_string(getuid());
  const struct {
    const char* where;
    bool runs;
    std::function<bool()> stand;
  } cases[] = {
      {"a place that nobody knows", true, [&] { return LockAsServer(Enter(elsewhere)); }},
      {"writing the registry", true,
       [&] {
         const bool locked = LockAsServer(Enter(elsewhere));
         fs::current_path(Prefix());
         return locked;
       }},
      {"a folder that a cleaner has removed", true,
       [&] { return LockAsServer(Enter(elsewhere)) && fs::remove_all(elsewhere) > 0; }},
      {"a Flatpak's /tmp", true, [&] { return LockAsServer(ServerLock(app / "tmp" / user)); }},
      {"a Flatpak's runtime folder", true,
       [&] { return LockAsServer(ServerLock(app / "xdg-run/wine")); }},
      {"the folder of TMPDIR", true,
       [&] { return LockAsServer(ServerLock(Prefix() / "tmp" / user)); }},
      {"no lock", false, [&] { return !Enter(elsewhere).empty(); }},
      {"a shell in the prefix", false,
       [] {
         fs::current_path(Prefix());
         return true;
       }},
      {"another prefix's", false,
       [&] { return LockAsServer(ServerLock(elsewhere / "server-1-2")); }},
      {"another Torvane", false,
       [&] {
         static std::list<posix::WineServerHold> holds;
         holds.emplace_back(Prefix());
         return true;
       }},
  };
  for (const auto& [where, runs, stand] : cases) {
    SCOPED_TRACE(where);
    {
      const OtherProcess process(stand);
      ASSERT_TRUE(process.stands);
      EXPECT_EQ(posix::WineServerRuns(Prefix()), runs);
      EXPECT_EQ(Set("K", "a", "1"), runs ? ERROR_SHARING_VIOLATION : ERROR_SUCCESS);
    }
    EXPECT_FALSE(posix::WineServerRuns(Prefix()));
    fs::remove_all(elsewhere);
  }
}

TEST_F(WineServerTest, IsSeenInAMountNamespaceOfItsOwn) {
  const bool isAllowed = OtherProcess([&] { return EnterSandbox(Prefix()); }).stands;
  if (!isAllowed) std::puts("the kernel forbids a mount namespace: not tried");
  const fs::path folder = "/tmp/sandbox" / ServerLock(Prefix() / "run").parent_path().filename();
  const OtherProcess server([&] {
    if (!EnterSandbox(Prefix()) || !fs::create_directories(folder)) return false;
    fs::current_path(folder);
    return LockAsServer("lock");
  });
  EXPECT_EQ(server.stands, isAllowed);
  EXPECT_EQ(posix::WineServerRuns(Prefix()), isAllowed);
}

TEST_F(WineServerTest, NoneStartsWhereNoneHasRunBefore) {
  const fs::path debian = Prefix() / "tmp/wine-Ab12Cd";
  Write(Prefix() / "wineserver", debian.filename().string());
  fs::create_directories(Prefix() / "run");
  posix::WineServerHold hold(Prefix());
  for (const fs::path& root :
       {fs::path("/tmp/.wine-" + std::to_string(getuid())), Prefix() / "run/wine", debian}) {
    SCOPED_TRACE(root);
    const fs::path lock = ServerLock(root);
    struct stat file {};
    struct stat folder {};
    ASSERT_EQ(stat(lock.c_str(), &file), 0);
    ASSERT_EQ(stat(lock.parent_path().c_str(), &folder), 0);
    EXPECT_EQ(file.st_mode & 07777U, 0600U);
    EXPECT_EQ(folder.st_mode & 07777U, 0700U);
    EXPECT_FALSE(OtherProcess([&] { return LockAsServer(lock); }).stands);
    EXPECT_NO_THROW(hold.confirm());
    EXPECT_FALSE(OtherProcess([&] { return LockAsServer(lock); }).stands) << "asking drops no lock";
  }
}

TEST_F(WineServerTest, OneThatStartsBeforeTheRenamingIsTold) {
  std::unique_ptr<OtherProcess> server;
  TracedChild child([&] {
    Set("K", "a", "1");
    const auto failures = posix::WriteBackChanges();
    const bool told = failures.size() == 1 &&
                      failures.front().kind == posix::WriteFailureKind::MayNotLast &&
                      !posix::ChangesWait();
    if (!told) std::abort();
  });
  for (auto call = child.next(); call; call = child.next()) {
    if (*call != SYS_renameat2) continue;
    server =
        std::make_unique<OtherProcess>([&] { return LockAsServer(Enter(Prefix() / "elsewhere")); });
  }
  EXPECT_TRUE(server && server->stands);
  EXPECT_TRUE(child.endedWell());
  EXPECT_NE(Read(UserHive()).find("\"a\"=\"1\""), std::string::npos);
}

}  // namespace
}  // namespace torvane::testing
