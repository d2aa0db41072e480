// A wineserver's current folder is the one that holds its lock, but for the moments in which it
// writes the registry: then it is the prefix. /proc/<pid>/cwd leads there through every mount, and
// so does /proc/<pid>/fd to a lock whose folder has been deleted by a cleaner of /tmp.
#include "platform/posix/prefix/server_processes.h"

#include <dirent.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <memory>
#include <set>
#include <string_view>
#include <system_error>

namespace torvane::posix {
namespace {

struct FolderCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, FolderCloser>;

/// What a link of /proc leads to, in words that nothing is opened for; empty where it can't be
/// read.
std::string TargetOf(const std::string& link) {
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlink(link.c_str(), target.data(), target.size());
  return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : std::string();
}

/// The last name of a target, without the kernel's word that it has been deleted.
std::string_view LastName(std::string_view target) {
  constexpr std::string_view kDeleted = " (deleted)";
  if (target.ends_with(kDeleted)) target.remove_suffix(kDeleted.size());
  return target.substr(target.rfind('/') + 1);
}

bool IsNumber(std::string_view name) {
  return !name.empty() && name.find_first_not_of("0123456789") == name.npos;
}

/// The names in a folder of /proc that are numbers.
std::vector<std::string> NumbersIn(const std::string& folder) {
  std::vector<std::string> numbers;
  const OpenFolder open(opendir(folder.c_str()));
  // A process may end, and may be another's; a limit of this one must not make it blind.
  if (!open && (errno == EMFILE || errno == ENFILE || errno == ENOMEM))
    throw std::system_error(errno, std::generic_category(), folder);
  while (const dirent* entry = open ? readdir(open.get()) : nullptr)
    if (IsNumber(entry->d_name)) numbers.emplace_back(entry->d_name);
  return numbers;
}

/// The locks of the prefix's servers that a process has open.
std::vector<std::string> OpenLocks(const std::string& process, const std::string& serverFolder) {
  const std::string wanted = "/" + serverFolder + "/lock";
  std::vector<std::string> locks;
  const std::string folder = process + "/fd";
  for (const std::string& number : NumbersIn(folder)) {
    std::string link = folder;
    link.append("/").append(number);
    const std::string target = TargetOf(link);
    if (target.ends_with(wanted) || target.ends_with(wanted + " (deleted)")) locks.push_back(link);
  }
  return locks;
}

}  // namespace

ServerProcesses FindServerProcesses(const ServedPrefix& prefix) {
  ServerProcesses found;
  const std::string prefixName = prefix.path().filename().string();
  std::set<std::string> mounts{TargetOf("/proc/self/ns/mnt")};
  for (const std::string& number : NumbersIn("/proc")) {
    const std::string process = "/proc/" + number;
    const std::string folder = TargetOf(process + "/cwd");
    // It has ended, or it is another user's.
    if (folder.empty()) continue;
    const std::string_view name = LastName(folder);
    if (name == prefix.folder()) {
      std::vector<std::string> locks = OpenLocks(process, prefix.folder());
      locks.insert(locks.begin(), process + "/cwd/lock");
      found.processes.push_back({std::move(locks), true});
    } else if (name == prefixName) {
      found.processes.push_back({OpenLocks(process, prefix.folder()), false});
    }
    const std::string mount = TargetOf(process + "/ns/mnt");
    if (!mount.empty() && mounts.insert(mount).second) found.roots.push_back(process + "/root");
  }
  return found;
}

}  // namespace torvane::posix
