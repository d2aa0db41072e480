// A wineserver holds a record lock on the first byte of the file "lock" in its folder until it has
// written the registry and ends. A lock of ours there is of two bytes, by which another Torvane
// tells it from Wine's. It is a record lock too, though every close of the file drops it: of a lock
// of the other kind, which has no process, "wineserver -k" would kill all of the user's.
#include "platform/posix/prefix/wine_server.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>

#include "platform/posix/prefix/server_processes.h"

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

constexpr off_t kOurLength = 2;

struct flock LockOf(off_t length) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = 0;
  lock.l_len = length;
  return lock;
}

/// The descriptors are kept until their owner goes, so that no lock of ours is dropped by looking.
using Opened = std::vector<FileDescriptor>;

enum class Answer { Free, Held, Absent, Unknown };

/// Asks a lock file; `links` is O_NOFOLLOW, or 0 where the way there is a link of /proc.
Answer Ask(const fs::path& lock, int links, const ServedPrefix& prefix, Opened& opened) {
  FileDescriptor file(open(lock.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | links));
  if (!file) return errno == ENOENT || errno == ENOTDIR ? Answer::Absent : Answer::Unknown;
  struct stat status {};
  if (fstat(file.get(), &status) != 0) return Answer::Unknown;
  if (!prefix.trusts(status.st_uid)) return Answer::Absent;
  struct flock found = LockOf(1);
  const bool asked = fcntl(file.get(), F_GETLK, &found) == 0;
  opened.push_back(std::move(file));
  if (!asked) return Answer::Unknown;
  const bool ours = found.l_start == 0 && found.l_len == kOurLength;
  return found.l_type == F_UNLCK || ours ? Answer::Free : Answer::Held;
}

/// Whether the folder is there and one of those whose servers count.
bool IsPlace(const fs::path& place, const ServedPrefix& prefix) {
  struct stat status {};
  return lstat(place.c_str(), &status) == 0 && prefix.trusts(status.st_uid);
}

/// The lock files that there are or may be below folders of servers.
std::vector<fs::path> LocksInPlaces(const ServedPrefix& prefix, const ServerProcesses& processes) {
  std::vector<fs::path> locks;
  const auto add = [&](const fs::path& place) {
    if (IsPlace(place, prefix)) locks.push_back(place / prefix.folder() / "lock");
  };
  for (const ServerPlace& place : KnownServerPlaces(prefix)) add(place.folder);
  for (const std::string& root : processes.roots)
    for (const fs::path& place : ServerPlacesBelow(root, prefix)) add(place);
  return locks;
}

bool IsServer(const ServerProcesses::Process& process, const ServedPrefix& prefix, Opened& opened) {
  bool isUnknown = false;
  for (const std::string& lock : process.locks) {
    const Answer answer = Ask(lock, 0, prefix, opened);
    if (answer == Answer::Held) return true;
    if (answer == Answer::Free) return false;
    isUnknown |= answer == Answer::Unknown;
  }
  return isUnknown && process.isServer;
}

[[noreturn]] void FailToAsk(const fs::path& lock, int error) {
  throw WriteRefused(static_cast<std::errc>(error),
                     "Whether Windows programs run in the Wine prefix can't be asked. " +
                         lock.string() + ": " + std::generic_category().message(error));
}

/// Throws std::system_error where what has to be asked can't be.
bool AnyServerRuns(const ServedPrefix& prefix, Opened& opened) {
  const ServerProcesses found = FindServerProcesses(prefix);
  const auto isServer = [&](const auto& process) { return IsServer(process, prefix, opened); };
  const auto isHeld = [&](const fs::path& lock) {
    const Answer answer = Ask(lock, O_NOFOLLOW, prefix, opened);
    if (answer == Answer::Unknown) FailToAsk(lock, errno);
    return answer == Answer::Held;
  };
  return std::ranges::any_of(found.processes, isServer) ||
         std::ranges::any_of(LocksInPlaces(prefix, found), isHeld);
}

/// Makes a folder as Wine does, and says whether Wine would take what stands there.
bool MakeServerFolder(const fs::path& folder) {
  struct stat status {};
  if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return false;
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == geteuid() && (status.st_mode & 077) == 0;
}

/// Makes the lock file of a server that would start at `place`, where this user's would. What can't
/// be made isn't held; whoever starts there is seen behind the writing.
void MakeLock(const fs::path& place, const ServedPrefix& prefix) {
  const fs::path folder = place / prefix.folder();
  if (prefix.owner() != geteuid() || !MakeServerFolder(place) || !MakeServerFolder(folder)) return;
  const FileDescriptor made(
      open((folder / "lock").c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
}

}  // namespace

PrefixInUse::PrefixInUse()
    : WriteRefused(std::errc::device_or_resource_busy,
                   "The Wine prefix is in use by a Windows program.", WriteFailureKind::HeldByUse) {
}

bool WineServerRuns(const fs::path& prefix) {
  try {
    Opened opened;
    return AnyServerRuns(ServedPrefix(prefix), opened);
  } catch (const std::system_error&) {
    // What can't be asked counts as running.
    return true;
  }
}

WineServerHold::WineServerHold(const fs::path& prefix) : prefix_(prefix) {
  for (const ServerPlace& place : KnownServerPlaces(prefix_))
    if (place.made) MakeLock(place.folder, prefix_);
  for (const fs::path& lock : LocksInPlaces(prefix_, FindServerProcesses(prefix_)))
    if (!hold(lock)) throw PrefixInUse();
  if (AnyServerRuns(prefix_, locks_)) throw PrefixInUse();
}

/// Gives false where someone else has the lock.
bool WineServerHold::hold(const fs::path& lock) {
  FileDescriptor file(open(lock.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!file && errno != ENOENT && errno != ENOTDIR) FailToAsk(lock, errno);
  if (!file) return true;
  struct flock ours = LockOf(kOurLength);
  const bool held = fcntl(file.get(), F_SETLK, &ours) == 0;
  locks_.push_back(std::move(file));
  return held;
}

void WineServerHold::confirm() {
  constexpr auto kBusy = std::errc::device_or_resource_busy;
  try {
    if (!AnyServerRuns(prefix_, locks_)) return;
  } catch (const std::system_error& error) {
    throw WriteRefused(kBusy, ReasonOf(error), WriteFailureKind::MayNotLast);
  }
  throw WriteRefused(kBusy,
                     "A Windows program was started in the Wine prefix while it was written. Wine "
                     "may have read the old file and write that back when it ends.",
                     WriteFailureKind::MayNotLast);
}

}  // namespace torvane::posix
