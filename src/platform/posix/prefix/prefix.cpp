// Finds the prefix by the environment, or makes one that holds just enough for the layer and for
// Wine, which fills it up when it is first run on it.
#include "platform/posix/prefix/prefix.h"

#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/prefix/new_hive.h"
#include "platform/posix/prefix/settings_text.h"

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kArchitecture = "win64";

std::optional<fs::path>& KnownRoot() {
  static std::optional<fs::path> root;
  return root;
}

const AtForget kForgetRoot([] { KnownRoot().reset(); });

std::optional<FoundPrefix>& Chosen() {
  static std::optional<FoundPrefix> chosen;
  return chosen;
}

std::optional<fs::path> EnvironmentPath(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return fs::absolute(value);
}

fs::path StateFile() {
  return BaseFolder("XDG_STATE_HOME", ".local/state") / "torvane/prefix";
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
    MakeFile(root / "system.reg", NewHive(HiveRoot::Machine, kArchitecture));
    MakeFile(root / "user.reg", NewHive(HiveRoot::User, kArchitecture));
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
  if (Chosen()) return CheckedPrefix(Chosen()->root);
  if (auto named = EnvironmentPath("WINEPREFIX")) return CheckedPrefix(*named);
  const std::vector<FoundPrefix> found = FindPrefixes();
  if (found.size() == 1) return found.front().root;
  if (!found.empty())
    throw PrefixError("There are several Wine prefixes. Name one with --prefix or WINEPREFIX.");
  if (HomeFolder().empty())
    throw PrefixError("There is no home folder to look for a Wine prefix in.");
  fs::path root = BaseFolder("XDG_DATA_HOME", ".local/share") / "torvane/prefix";
  MakeMinimalPrefix(root);
  return root;
}

}  // namespace

const fs::path& PrefixRoot() {
  auto& root = KnownRoot();
  if (!root) root = fs::canonical(FindPrefix());
  return *root;
}

std::vector<FoundPrefix> PrefixesToChooseFrom() {
  if (Chosen() || EnvironmentPath("WINEPREFIX")) return {};
  std::vector<FoundPrefix> found = FindPrefixes();
  if (found.size() < 2) found.clear();
  return found;
}

void ChoosePrefix(const FoundPrefix& prefix) {
  Chosen() = prefix;
}

FoundPrefix PrefixNamed(const fs::path& folder) {
  const auto root = PrefixIn(folder);
  if (!root) {
    throw PrefixError("The folder " + folder.string() +
                      " is no Wine prefix: neither it nor its folder pfx has a folder drive_c.");
  }
  for (FoundPrefix& found : FindPrefixes())
    if (found.root == *root) return std::move(found);
  return {*root, ShownName(folder.filename()), {}};
}

std::string ChosenTitle() {
  if (!Chosen()) return {};
  return Chosen()->manager.empty() ? Chosen()->name : Chosen()->manager + ": " + Chosen()->name;
}

fs::path LastChoice() {
  constexpr std::streamsize kLongest = 4096;
  std::ifstream file(StateFile(), std::ios::binary);
  std::string root(kLongest, '\0');
  file.read(root.data(), kLongest);
  root.resize(static_cast<std::size_t>(file.gcount()));
  return root.substr(0, root.find('\n'));
}

void KeepChoice(const fs::path& root) {
  const fs::path file = StateFile();
  std::error_code ignored;
  fs::create_directories(file.parent_path(), ignored);
  try {
    ReplaceFile(file, root.native() + "\n");
  } catch (const std::system_error&) {
    // The user is asked again all the same.
  }
}

}  // namespace torvane::posix
