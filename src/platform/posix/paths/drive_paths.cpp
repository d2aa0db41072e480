// A drive's root is the link of its letter in the prefix's dosdevices; from there a path goes down
// part by part, so that each can be found without case.
#include "platform/posix/paths/drive_paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/posix/paths/folder_cache.h"
#include "platform/posix/paths/host_lookup.h"
#include "platform/posix/paths/windows_path.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/text/code_page.h"

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

bool IsFolder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// The name of the link of a drive ("c:").
std::string DriveName(char16_t drive) {
  return {static_cast<char>(drive), ':'};
}

/// A Windows path from a drive's root and a host path below it; nothing where a name can't be
/// written in one.
std::optional<std::u16string> JoinBelow(char16_t drive, const fs::path& below) {
  std::u16string path{static_cast<char16_t>(drive - u'a' + u'A'), u':'};
  for (const fs::path& part : below) {
    const std::u16string name = FromUtf8(part.native());
    if (!IsReachableName(name) || ToUtf8(name) != part.native()) return std::nullopt;
    path += u'\\';
    path += name;
  }
  if (path.size() == 2) path += u'\\';
  return path;
}

}  // namespace

std::optional<std::string> DriveRoot(char16_t drive) {
  if (drive == 0) return std::string();
  const std::string& prefix = PrefixRoot().native();
  std::string root = prefix + "/dosdevices/" + DriveName(drive);
  if (IsFolder(root)) return root;
  // A prefix without its dosdevices still has the drive that every prefix has.
  std::error_code ignored;
  if (drive == u'c' && !fs::is_symlink(root, ignored)) return prefix + "/drive_c";
  return std::nullopt;
}

std::optional<std::string> FindFolderOf(const PathParts& path) {
  std::optional<std::string> host = DriveRoot(path.drive);
  for (std::size_t i = 0; host && i + 1 < path.parts.size(); ++i) {
    host = FindPart(*host, path.parts[i]);
  }
  return host;
}

std::optional<std::string> FindPart(const std::string& folder, std::u16string_view part) {
  if (!IsFileName(part)) return std::nullopt;
  const auto name = FindInFolder(folder, part);
  if (!name) return std::nullopt;
  return folder + "/" + *name;
}

std::optional<fs::path> FindHostPath(std::u16string_view windowsPath) {
  const auto path = SplitWindowsPath(windowsPath);
  if (!path || path->device) return std::nullopt;
  auto host = FindFolderOf(*path);
  if (host && !path->parts.empty()) host = FindPart(*host, path->parts.back());
  if (!host) return std::nullopt;
  if (host->empty()) return fs::path("/");
  const bool there = path->closed ? IsFolder(*host) : access(host->c_str(), F_OK) == 0;
  if (!there) return std::nullopt;
  return *host;
}

std::optional<fs::path> HostPathForNew(std::u16string_view windowsPath) {
  const auto path = SplitWindowsPath(windowsPath);
  if (!path || path->device || path->closed || path->parts.empty()) return std::nullopt;
  const std::u16string& name = path->parts.back();
  const auto folder = FindFolderOf(*path);
  if (!folder || !IsFileName(name) || !IsFolder(folder->empty() ? "/" : *folder)) {
    return std::nullopt;
  }
  return FindPart(*folder, name).value_or(*folder + "/" + ToUtf8(name));
}

std::optional<std::u16string> WindowsPath(const fs::path& hostPath) {
  std::error_code error;
  const fs::path host = fs::canonical(hostPath, error);
  if (error) return std::nullopt;
  std::optional<std::u16string> best;
  std::size_t bestLength = 0;
  for (char16_t drive = u'a'; drive <= u'z'; ++drive) {
    const auto root = DriveRoot(drive);
    if (!root) continue;
    const fs::path target = fs::canonical(*root, error);
    const fs::path below = error ? fs::path("..") : host.lexically_relative(target);
    if (below.empty() || *below.begin() == "..") continue;
    const std::size_t length = target.native().size();
    if (best && length <= bestLength) continue;
    const auto path = JoinBelow(drive, below == "." ? fs::path() : below);
    if (!path) continue;
    best = path;
    bestLength = length;
  }
  return best;
}

}  // namespace torvane::posix
