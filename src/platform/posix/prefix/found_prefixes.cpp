// The same look at each home: the user's own, that of every Flatpak below ~/.var/app, and that of
// every Snap. A folder that can't be read, or isn't what it should be, costs its own place only.
#include "platform/posix/prefix/found_prefixes.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <set>
#include <system_error>
#include <utility>

#include "platform/posix/prefix/prefix_managers.h"
#include "platform/posix/prefix/settings_text.h"

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

/// The prefixes so far. A prefix is known by its folder's inode, whatever links lead there.
class Collection {
 public:
  void take(const char* manager, const fs::path& folder, const std::string& name) {
    const auto root = PrefixIn(folder);
    struct stat status {};
    if (!root || stat(root->c_str(), &status) != 0) return;
    if (!known_.emplace(status.st_dev, status.st_ino).second) return;
    std::string shown = ShownName(name);
    if (shown.empty()) shown = ShownName(folder.filename());
    found_.push_back({*root, std::move(shown), manager});
  }
  std::vector<FoundPrefix> found() && { return std::move(found_); }

 private:
  std::set<std::pair<dev_t, ino_t>> known_;
  std::vector<FoundPrefix> found_;
};

std::vector<HomeFolders> Homes() {
  const fs::path home = HomeFolder();
  std::vector<HomeFolders> homes;
  if (home.empty()) return homes;
  homes.push_back({home,
                   {BaseFolder("XDG_DATA_HOME", ".local/share"), home / ".local/share"},
                   {BaseFolder("XDG_CONFIG_HOME", ".config"), home / ".config"}});
  for (const fs::path& app : FoldersIn(home / ".var/app"))
    homes.push_back({app, {app / "data", app / ".local/share"}, {app / "config", app / ".config"}});
  for (const fs::path& app : FoldersIn(home / "snap"))
    for (const char* version : {"common", "current"})
      homes.push_back(
          {app / version, {app / version / ".local/share"}, {app / version / ".config"}});
  return homes;
}

}  // namespace

fs::path HomeFolder() {
  const char* named = std::getenv("HOME");
  if (named != nullptr && *named != '\0') return fs::absolute(named);
  const passwd* user = getpwuid(getuid());
  return user == nullptr ? fs::path() : fs::path(user->pw_dir);
}

fs::path BaseFolder(const char* variable, std::string_view below) {
  const char* named = std::getenv(variable);
  return named != nullptr && *named == '/' ? fs::path(named) : HomeFolder() / below;
}

std::optional<fs::path> PrefixIn(const fs::path& folder) {
  std::error_code error;
  const fs::path real = fs::canonical(folder, error);
  if (error) return std::nullopt;
  for (const fs::path& root : {real, fs::canonical(real / "pfx", error)})
    if (!root.empty() && IsBelow(root, real) && fs::is_directory(root / "drive_c", error))
      return root;
  return std::nullopt;
}

std::vector<FoundPrefix> FindPrefixes() {
  Collection collection;
  const std::vector<HomeFolders> homes = Homes();
  for (const PrefixManager& manager : PrefixManagers())
    for (const HomeFolders& folders : homes)
      manager.find(folders, [&](const fs::path& folder, const std::string& name) {
        collection.take(manager.name, folder, name);
      });
  if (const char* named = std::getenv("WINEPREFIX"); named != nullptr && *named != '\0')
    collection.take("Wine", fs::absolute(named), {});
  return std::move(collection).found();
}

}  // namespace torvane::posix
