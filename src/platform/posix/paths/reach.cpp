// A prefix that a sandbox made maps drives to places as the sandbox has them: its own folders,
// which aren't there outside, or are there but aren't the same.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <span>
#include <string>
#include <string_view>

#include "platform/extras.h"
#include "platform/posix/paths/windows_path.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/text/code_page.h"

namespace torvane {
namespace {

/// Folders that a Flatpak has to itself, wherever a drive leads there.
constexpr std::string_view kSandboxOwn[] = {
    "/app/",        "/newroot/",  "/run/flatpak/",      "/run/host/",
    "/var/config/", "/var/data/", "/run/build-runtime/"};
/// And those that every program has, but a sandboxed one apart from the others.
constexpr std::string_view kSandboxApart[] = {"/tmp/", "/var/tmp/", "/var/cache/"};

bool IsIn(std::string_view path, std::span<const std::string_view> folders) {
  return std::ranges::any_of(folders, [&](std::string_view folder) {
    return path.starts_with(folder) || path == folder.substr(0, folder.size() - 1);
  });
}

/// Whether a sandbox has made the prefix: it lies in the home of a Flatpak or a Snap.
bool IsSandboxed(const std::string& prefix) {
  return prefix.find("/.var/app/") != prefix.npos || prefix.find("/snap/") != prefix.npos;
}

/// What the link of a drive holds; empty for a drive that isn't mapped by one.
std::string TargetOf(const std::string& prefix, char16_t drive) {
  const std::string link = prefix + "/dosdevices/" + static_cast<char>(drive) + ":";
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlink(link.c_str(), target.data(), target.size());
  return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : std::string();
}

}  // namespace

bool IsOutOfReach(const std::u16string& path) {
  const auto parts = posix::SplitWindowsPath(path);
  if (!parts || parts->device || parts->drive == 0) return false;
  const std::string& prefix = posix::PrefixRoot().native();
  std::string host = TargetOf(prefix, parts->drive);
  if (!host.starts_with('/')) return false;
  struct stat status {};
  const bool isDriveThere = stat(host.c_str(), &status) == 0;
  const int error = isDriveThere ? 0 : errno;
  if (error == EACCES) return true;
  if (host.back() != '/') host += '/';
  if (IsIn(host, kSandboxOwn) || (!isDriveThere && IsSandboxed(prefix))) return true;
  for (const std::u16string& part : parts->parts) host.append(posix::ToUtf8(part)).append("/");
  if (IsIn(host, kSandboxOwn) || (IsSandboxed(prefix) && IsIn(host, kSandboxApart))) return true;
  return stat(host.c_str(), &status) != 0 && errno == EACCES;
}

}  // namespace torvane
