// A plain Wine keeps its servers' folders in /tmp/.wine-<uid>, a patched one in the user's runtime
// folder or that of $TMPDIR. Debian's chooses a new name in $TMPDIR or /tmp once for each prefix
// and writes it to the prefix's file "wineserver". In a Flatpak, /tmp and the runtime folder are
// folders of the app's own, which the user's runtime folder shows from outside.
#include "platform/posix/prefix/server_places.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <set>
#include <sstream>
#include <system_error>

#include "platform/posix/disk/atomic_file.h"

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr || *value != '/' ? std::string() : value;
}

std::string FolderOfUser(uid_t user) {
  return ".wine-" + std::to_string(user);
}

std::string RuntimeFolderOf(uid_t user) {
  return "/run/user/" + std::to_string(user);
}

/// The name of the folder that Debian's Wine has chosen for this prefix; empty for none.
std::string DebianName(const fs::path& prefix) {
  constexpr std::size_t kLongest = 255;
  constexpr std::uint64_t kMostBytes = 4096;
  const FileContent content = ReadWholeFile(prefix / "wineserver", kMostBytes);
  const std::string name(content.view().substr(0, content.view().find('\n')));
  const bool usable = name.size() <= kLongest && name != "." && name != ".." &&
                      name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
  return usable ? name : std::string();
}

/// The users whose servers matter: this one, and the prefix's owner.
std::set<uid_t> Users(const ServedPrefix& prefix) {
  return {getuid(), prefix.owner()};
}

void AddApps(const fs::path& apps, const ServedPrefix& prefix, const std::string& debian,
             std::vector<ServerPlace>& places) {
  std::error_code error;
  for (fs::directory_iterator app(apps, error), end; !error && app != end; app.increment(error)) {
    // Only the app that the prefix belongs to is sure to start a Wine on it.
    const std::string home = "/.var/app/" + app->path().filename().string() + "/";
    const bool owns = prefix.path().native().find(home) != std::string::npos;
    const fs::path temporary = app->path() / "tmp";
    const fs::path runtime = app->path() / "xdg-run";
    for (const uid_t user : Users(prefix))
      places.push_back({temporary / FolderOfUser(user), owns && user == geteuid()});
    if (!debian.empty()) places.push_back({temporary / debian, false});
    places.push_back({runtime / "wine", false});
  }
}

}  // namespace

ServedPrefix::ServedPrefix(const fs::path& prefix) : path_(fs::canonical(prefix)) {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0)
    throw std::system_error(errno, std::generic_category(), path_.string());
  owner_ = status.st_uid;
  std::ostringstream name;
  name << "server-" << std::hex << status.st_dev << '-' << status.st_ino;
  folder_ = name.str();
}

std::vector<ServerPlace> KnownServerPlaces(const ServedPrefix& prefix) {
  const std::string debian = DebianName(prefix.path());
  const std::string runtime = Variable("XDG_RUNTIME_DIR");
  std::set<fs::path> temporaries{"/tmp"};
  if (const std::string named = Variable("TMPDIR"); !named.empty()) temporaries.insert(named);
  std::vector<ServerPlace> places;
  for (const fs::path& temporary : temporaries) {
    for (const uid_t user : Users(prefix))
      places.push_back({temporary / FolderOfUser(user), temporary == "/tmp" && user == geteuid()});
    if (!debian.empty()) places.push_back({temporary / debian, true});
  }
  std::set<fs::path> runtimes;
  for (const uid_t user : Users(prefix)) runtimes.insert(RuntimeFolderOf(user));
  if (!runtime.empty()) runtimes.insert(runtime);
  for (const fs::path& folder : runtimes) {
    places.push_back({folder / "wine", folder == runtime});
    AddApps(folder / ".flatpak", prefix, debian, places);
  }
  return places;
}

std::vector<fs::path> ServerPlacesBelow(const std::string& root, const ServedPrefix& prefix) {
  const std::string debian = DebianName(prefix.path());
  std::vector<fs::path> places;
  for (const uid_t user : Users(prefix)) {
    places.emplace_back(root + "/tmp/" + FolderOfUser(user));
    places.emplace_back(root + RuntimeFolderOf(user) + "/wine");
  }
  if (!debian.empty()) places.emplace_back(root + "/tmp/" + debian);
  return places;
}

}  // namespace torvane::posix
