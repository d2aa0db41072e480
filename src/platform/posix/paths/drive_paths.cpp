// A drive's root is the link of its letter in the prefix's dosdevices; from there a path goes down
// part by part, so that each can be found without case.
#include "platform/posix/paths/drive_paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <span>
#include <system_error>
#include <utility>

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

/// The host's path where all names are exact; nothing where one can't be a name.
std::optional<std::string> ExactPath(char16_t drive, std::span<const std::u16string> parts) {
  std::string path;
  if (drive != 0) path = PrefixRoot().native() + "/dosdevices/" + DriveName(drive);
  for (const std::u16string& part : parts) {
    if (!IsFileName(part)) return std::nullopt;
    path.append("/").append(ToUtf8(part));
  }
  return path;
}

}  // namespace

Drive LookAtDrive(char16_t drive) {
  if (drive == 0) return {};
  const std::string& prefix = PrefixRoot().native();
  const std::string links = prefix + "/dosdevices/";
  Drive look{links + DriveName(drive), {}, 0};
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlink(look.root.c_str(), target.data(), target.size());
  if (length < 0 && errno != EINVAL) {
    look.error = errno;
    // A prefix without its dosdevices still has the drive that every prefix has.
    if (drive == u'c') return {prefix + "/drive_c", {}, 0};
    return look;
  }
  if (length > 0) look.target.assign(target.data(), static_cast<std::size_t>(length));
  const std::string folder = look.target.empty()            ? look.root
                             : look.target.starts_with('/') ? look.target
                                                            : links + look.target;
  struct stat status {};
  if (stat(folder.c_str(), &status) != 0) {
    look.error = errno;
  } else if (!S_ISDIR(status.st_mode)) {
    look.error = ENOTDIR;
  }
  return look;
}

std::optional<std::string> DriveRoot(char16_t drive) {
  Drive look = LookAtDrive(drive);
  if (look.error != 0) return std::nullopt;
  return std::move(look.root);
}

std::optional<std::string> FindFolderOf(const PathParts& path) {
  struct stat status {};
  const std::span above(path.parts.data(), path.parts.empty() ? 0 : path.parts.size() - 1);
  if (auto exact = ExactPath(path.drive, above)) {
    if (stat((*exact + "/").c_str(), &status) == 0) return exact;
  }
  std::optional<std::string> host = DriveRoot(path.drive);
  for (std::size_t i = 0; host && i < above.size(); ++i) host = FindPart(*host, above[i]);
  return host;
}

std::optional<std::string> FindWhole(const PathParts& path, struct stat& status) {
  // A root has a slash behind it: without one the host's root would have no name.
  const char* const behind = path.parts.empty() ? "/" : "";
  if (auto exact = ExactPath(path.drive, path.parts)) {
    if (stat((*exact + behind).c_str(), &status) == 0) return exact;
    if (errno == EACCES) return std::nullopt;
  }
  auto host = FindFolderOf(path);
  errno = ENOTDIR;
  if (!host) return std::nullopt;
  if (!path.parts.empty()) host = FindPart(*host, path.parts.back());
  errno = ENOENT;
  if (!host || stat((*host + behind).c_str(), &status) != 0) return std::nullopt;
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
  struct stat status {};
  const auto host = FindWhole(*path, status);
  if (!host || (path->closed && !S_ISDIR(status.st_mode))) return std::nullopt;
  return host->empty() ? fs::path("/") : fs::path(*host);
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
