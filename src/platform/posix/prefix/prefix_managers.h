// Where each program keeps its prefixes, and what it calls them.
#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace torvane::posix {

/// The folders of a user as one program sees them: the user's own, or those of a sandbox.
struct HomeFolders {
  std::filesystem::path home;
  std::vector<std::filesystem::path> data;    ///< where programs keep their data
  std::vector<std::filesystem::path> config;  ///< and where their settings
};

/// Takes a folder that may be a prefix or hold one, and what its owner calls it; empty for the
/// folder's own name.
using TakePrefix =
    std::function<void(const std::filesystem::path& folder, const std::string& name)>;

struct PrefixManager {
  const char* name;
  void (*find)(const HomeFolders& folders, const TakePrefix& take);
};

/// Wine itself first.
std::span<const PrefixManager> PrefixManagers();

/// Whether a path, both without links, is the folder or lies below it.
bool IsBelow(const std::filesystem::path& path, const std::filesystem::path& folder);

/// The folders in a folder, links that lead out of it left out; empty where it can't be read.
std::vector<std::filesystem::path> FoldersIn(const std::filesystem::path& folder);

}  // namespace torvane::posix
