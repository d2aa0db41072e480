// Where the folder of a prefix's wineserver lies. It has changed with Wine's versions and differs
// by distribution and sandbox, so that all the places are asked.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

namespace torvane::posix {

/// A prefix as its servers know it. Throws std::system_error where it isn't there.
class ServedPrefix {
 public:
  explicit ServedPrefix(const std::filesystem::path& prefix);

  /// Without links.
  const std::filesystem::path& path() const { return path_; }
  uid_t owner() const { return owner_; }
  /// The name of its server's folder ("server-fe00-a7a4c3").
  const std::string& folder() const { return folder_; }
  /// Whether what this user has made can be a server's: Wine refuses what is someone else's.
  bool trusts(uid_t user) const { return user == getuid() || user == owner_; }

 private:
  std::filesystem::path path_;
  uid_t owner_ = 0;
  std::string folder_;
};

/// A folder that holds servers' folders, whether it is there or not.
struct ServerPlace {
  std::filesystem::path folder;
  bool made = false;  ///< a Wine that starts outside every other sandbox makes it where it isn't
};

/// The folders that a server of the prefix may keep its own in, as this program sees them: those of
/// a plain Wine and of Debian's, and those of the Flatpaks that run. Throws std::system_error where
/// the file by which Debian's Wine names its folder can't be read.
std::vector<ServerPlace> KnownServerPlaces(const ServedPrefix& prefix);

/// The same folders below a root that isn't this program's ("/proc/123/root").
std::vector<std::filesystem::path> ServerPlacesBelow(const std::string& root,
                                                     const ServedPrefix& prefix);

}  // namespace torvane::posix
