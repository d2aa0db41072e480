// A wineserver holds a record lock on the file "lock" in its folder until it has written the
// registry and ends. Where that folder lies has changed with Wine's versions and differs by
// distribution, so all the places are asked.
#include "platform/posix/wine_server.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <system_error>

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

/// The folder in /tmp that Debian's Wine has chosen for this prefix; empty for none. Throws
/// std::system_error where the file that names it can't be read.
fs::path DebianFolder(const fs::path& prefix) {
  const FileContent content = ReadWholeFile(prefix / "wineserver");
  const std::string name(content.view().substr(0, content.view().find('\n')));
  if (name.empty() || name.find('/') != std::string::npos || name == "..") return {};
  return fs::path("/tmp") / name;
}

/// Where a server of this user or of the prefix's owner may keep its folders.
std::set<fs::path> ServerRoots(const fs::path& prefix, uid_t owner) {
  std::set<fs::path> roots;
  for (const uid_t user : {getuid(), owner}) {
    roots.insert("/tmp/.wine-" + std::to_string(user));
    roots.insert("/run/user/" + std::to_string(user) + "/wine");
  }
  if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime != nullptr && *runtime != '\0')
    roots.insert(fs::path(runtime) / "wine");
  if (fs::path debian = DebianFolder(prefix); !debian.empty()) roots.insert(std::move(debian));
  return roots;
}

/// The lock files that a server for this prefix would hold.
std::vector<fs::path> LockFiles(const fs::path& prefix) {
  struct stat status {};
  if (stat(prefix.c_str(), &status) != 0) return {};
  std::ostringstream folder;
  folder << "server-" << std::hex << status.st_dev << '-' << status.st_ino;
  std::vector<fs::path> files;
  for (const fs::path& root : ServerRoots(prefix, status.st_uid)) {
    struct stat rootStatus {};
    if (lstat(root.c_str(), &rootStatus) != 0) continue;
    // Wine refuses a folder that is someone else's; so it is nothing to us either.
    if (rootStatus.st_uid != getuid() && rootStatus.st_uid != status.st_uid) continue;
    files.push_back(root / folder.str() / "lock");
  }
  return files;
}

struct flock ServerLock() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = 0;
  lock.l_len = 1;
  return lock;
}

/// Opens a lock file; none where there is no such file. One that can't be opened can't be asked,
/// and counts as held.
FileDescriptor OpenLockFile(const fs::path& file, int access) {
  FileDescriptor descriptor(open(file.c_str(), access | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!descriptor && errno != ENOENT && errno != ENOTDIR) throw PrefixInUse();
  return descriptor;
}

}  // namespace

PrefixInUse::PrefixInUse()
    : WriteRefused(std::errc::device_or_resource_busy,
                   "The Wine prefix is in use by a Windows program.") {}

bool WineServerRuns(const fs::path& prefix) {
  try {
    for (const fs::path& file : LockFiles(prefix)) {
      const FileDescriptor descriptor = OpenLockFile(file, O_RDONLY);
      if (!descriptor) continue;
      struct flock lock = ServerLock();
      if (fcntl(descriptor.get(), F_GETLK, &lock) != 0 || lock.l_type != F_UNLCK) return true;
    }
  } catch (const std::system_error&) {
    // What can't be asked counts as running.
    return true;
  }
  return false;
}

WineServerHold::WineServerHold(const fs::path& prefix) {
  for (const fs::path& file : LockFiles(prefix)) {
    FileDescriptor descriptor = OpenLockFile(file, O_RDWR);
    if (!descriptor) continue;
    struct flock lock = ServerLock();
    if (fcntl(descriptor.get(), F_SETLK, &lock) != 0) throw PrefixInUse();
    locks_.push_back(std::move(descriptor));
  }
}

}  // namespace torvane::posix
