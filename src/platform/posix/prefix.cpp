// Finds the prefix by the environment, or makes one that holds just enough for the layer and for
// Wine, which fills it up when it is first run on it.
#include "platform/posix/prefix.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/posix/atomic_file.h"
#include "platform/posix/hive.h"

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kArchitecture = "win64";

std::optional<fs::path>& KnownRoot() {
  static std::optional<fs::path> root;
  return root;
}

std::vector<void (*)()>& Caches() {
  static std::vector<void (*)()> caches;
  return caches;
}

std::optional<fs::path> EnvironmentPath(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return fs::absolute(value);
}

fs::path HomeFolder() {
  if (auto home = EnvironmentPath("HOME")) return *home;
  const passwd* user = getpwuid(getuid());
  if (user == nullptr) throw PrefixError("There is no home folder to look for a Wine prefix in.");
  return user->pw_dir;
}

/// Makes a file unless one is there.
void MakeFile(const fs::path& path, std::string_view content) {
  if (!fs::exists(path)) ReplaceFile(path, content);
}

void MakeLink(const fs::path& target, const fs::path& link) {
  if (!fs::is_symlink(fs::symlink_status(link))) fs::create_directory_symlink(target, link);
}

/// Each step may have been done already by a start that was cut off.
void MakeMinimalPrefix(const fs::path& root) {
  try {
    fs::create_directories(root / "drive_c/windows/system32");
    fs::create_directories(root / "dosdevices");
    MakeLink("../drive_c", root / "dosdevices/c:");
    MakeLink("/", root / "dosdevices/z:");
    MakeFile(root / "system.reg", HiveHeader(HiveRole::Machine, kArchitecture));
    MakeFile(root / "user.reg", HiveHeader(HiveRole::User, kArchitecture));
  } catch (const std::system_error& error) {
    throw PrefixError("The Wine prefix " + root.string() +
                      " can't be made: " + error.code().message() + ".");
  }
}

fs::path CheckedPrefix(const fs::path& root) {
  std::error_code ignored;
  if (!fs::is_directory(root, ignored))
    throw PrefixError("The Wine prefix " + root.string() + " doesn't exist.");
  if (!fs::is_directory(root / "drive_c", ignored))
    throw PrefixError("The folder " + root.string() + " is no Wine prefix: it has no drive_c.");
  return root;
}

fs::path FindPrefix() {
  if (auto named = EnvironmentPath("WINEPREFIX")) return CheckedPrefix(*named);
  const fs::path home = HomeFolder();
  std::error_code ignored;
  if (fs::exists(home / ".wine", ignored)) return CheckedPrefix(home / ".wine");
  fs::path root =
      EnvironmentPath("XDG_DATA_HOME").value_or(home / ".local/share") / "torvane/prefix";
  MakeMinimalPrefix(root);
  return root;
}

}  // namespace

const fs::path& PrefixRoot() {
  auto& root = KnownRoot();
  if (!root) root = FindPrefix();
  return *root;
}

void ForgetWorld() {
  for (const auto forget : Caches()) forget();
  KnownRoot().reset();
}

AtForget::AtForget(void (*forget)()) {
  Caches().push_back(forget);
}

}  // namespace torvane::posix
