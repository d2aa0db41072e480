// Each program's layout stands in a function of its own; only the folders that it names are looked
// into, a level deep.
#include "platform/posix/prefix/prefix_managers.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <system_error>

#include "platform/posix/prefix/settings_text.h"

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

/// More than anyone has, and few enough to be looked at in no time.
constexpr std::size_t kMostEntries = 10'000;

using Names = std::map<std::string, std::string>;
using Keys = std::span<const std::string>;

bool AreKeys(Keys keys, std::initializer_list<std::string_view> wanted) {
  return std::ranges::equal(keys, wanted);
}

/// The files in a folder whose names end so.
std::vector<fs::path> FilesIn(const fs::path& folder, const char* ending) {
  std::vector<fs::path> files;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (entry->path().extension() == ending) files.push_back(entry->path());
    if (files.size() >= kMostEntries) break;
  }
  std::ranges::sort(files);
  return files;
}

void TakeEach(const fs::path& folder, const TakePrefix& take) {
  for (const fs::path& entry : FoldersIn(folder)) take(entry, {});
}

/// A folder as a program's settings name it, which in a sandbox it may do by the sandbox's own
/// names; empty for one that isn't named from the root.
fs::path NamedFolder(const std::string& name, const HomeFolders& folders) {
  constexpr std::string_view kHome = "~/";
  constexpr std::string_view kSandboxData = "/var/data/";
  constexpr std::string_view kSandboxConfig = "/var/config/";
  if (name.find('\0') != name.npos) return {};
  if (name.starts_with(kHome)) return folders.home / name.substr(kHome.size());
  if (name.starts_with(kSandboxData))
    return folders.home / "data" / name.substr(kSandboxData.size());
  if (name.starts_with(kSandboxConfig))
    return folders.home / "config" / name.substr(kSandboxConfig.size());
  return name.starts_with('/') ? fs::path(name) : fs::path();
}

/// The text under a key of a file's outermost map; empty for none.
std::string YamlText(const fs::path& file, std::string_view key) {
  std::string found;
  VisitYaml(file, [&](Keys keys, const std::string& text) {
    if (!AreKeys(keys, {key})) return true;
    found = text;
    return false;
  });
  return found;
}

void FindWine(const HomeFolders& folders, const TakePrefix& take) {
  take(folders.home / ".wine", {});
  for (const fs::path& data : folders.data) {
    take(data / "wine", {});
    TakeEach(data / "wineprefixes", take);
  }
}

/// A bottle that was made elsewhere leaves a note of where.
void TakeBottles(const fs::path& bottles, const HomeFolders& folders, const TakePrefix& take) {
  for (const fs::path& folder : FoldersIn(bottles)) {
    const fs::path elsewhere = NamedFolder(YamlText(folder / "placeholder.yml", "Path"), folders);
    const fs::path bottle = elsewhere.empty() ? folder : elsewhere;
    take(bottle, YamlText(bottle / "bottle.yml", "Name"));
  }
}

void FindBottles(const HomeFolders& folders, const TakePrefix& take) {
  for (const fs::path& data : folders.data) {
    TakeBottles(data / "bottles/bottles", folders, take);
    const std::string custom = YamlText(data / "bottles/data.yml", "custom_bottles_path");
    if (const fs::path named = NamedFolder(custom, folders); !named.empty())
      TakeBottles(named, folders, take);
  }
}

struct DatabaseCloser {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

/// The names of the games in Lutris's database, by the names of their files without ".yml". It is
/// read as it stands, without a lock or a file of SQLite's own.
Names LutrisNames(const fs::path& file) {
  Names names;
  std::error_code error;
  constexpr std::uintmax_t kLargest = std::uintmax_t{64} << 20;
  if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > kLargest) return names;
  std::string address = "file:";
  for (const char letter : file.native())
    address += letter == '%' || letter == '?' || letter == '#'
                   ? "%" + std::string(letter == '%'   ? "25"
                                       : letter == '?' ? "3f"
                                                       : "23")
                   : std::string(1, letter);
  sqlite3* opened = nullptr;
  const int status = sqlite3_open_v2((address + "?mode=ro&immutable=1").c_str(), &opened,
                                     SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
  const std::unique_ptr<sqlite3, DatabaseCloser> database(opened);
  sqlite3_stmt* prepared = nullptr;
  // A view of that name could compute for ever.
  constexpr const char* kQuery = "SELECT configpath, name FROM games";
  constexpr int kMostSteps = 5'000'000;
  sqlite3_progress_handler(
      opened, kMostSteps, [](void*) { return 1; }, nullptr);
  if (status != SQLITE_OK ||
      sqlite3_prepare_v2(opened, kQuery, -1, &prepared, nullptr) != SQLITE_OK)
    return names;
  const std::unique_ptr<sqlite3_stmt, DatabaseCloser> statement(prepared);
  const auto text = [&](int column) {
    const auto* bytes = sqlite3_column_text(prepared, column);
    return bytes == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(bytes));
  };
  while (names.size() < kMostEntries && sqlite3_step(prepared) == SQLITE_ROW)
    names.emplace(text(0), text(1));
  return names;
}

/// "tide-table-1699000000", as Lutris calls its files, without the time.
std::string WithoutTime(const std::string& stem) {
  const std::size_t dash = stem.rfind('-');
  const bool isTime = dash != stem.npos && dash > 0 && dash + 1 < stem.size() &&
                      stem.find_first_not_of("0123456789", dash + 1) == stem.npos;
  return isTime ? stem.substr(0, dash) : stem;
}

void TakeLutrisGame(const fs::path& file, const Names& names, const HomeFolders& folders,
                    const TakePrefix& take) {
  const std::string stem = file.stem();
  std::string name = WithoutTime(stem);
  std::string prefix;
  VisitYaml(file, [&](Keys keys, const std::string& text) {
    if (AreKeys(keys, {"game", "prefix"})) prefix = text;
    if (AreKeys(keys, {"name"}) && !text.empty()) name = text;
    return true;
  });
  const auto known = names.find(stem);
  if (known != names.end() && !known->second.empty()) name = known->second;
  if (const fs::path folder = NamedFolder(prefix, folders); !folder.empty()) take(folder, name);
}

void FindLutris(const HomeFolders& folders, const TakePrefix& take) {
  std::vector<fs::path> bases;
  Names names;
  for (const auto& group : {folders.config, folders.data})
    for (const fs::path& base : group) bases.push_back(base / "lutris");
  for (const fs::path& base : bases) names.merge(LutrisNames(base / "pga.db"));
  for (const fs::path& base : bases)
    for (const fs::path& file : FilesIn(base / "games", ".yml"))
      TakeLutrisGame(file, names, folders, take);
}

/// The titles of the games that Heroic knows, by their apps' names.
Names HeroicTitles(const fs::path& heroic) {
  Names titles;
  std::vector<fs::path> libraries = FilesIn(heroic / "store_cache", ".json");
  libraries.push_back(heroic / "sideload_apps/library.json");
  for (const fs::path& library : libraries) {
    // The two texts of a game come in either order.
    std::string item;
    std::string app;
    std::string title;
    VisitJson(library, [&](Keys keys, const std::string& text) {
      if (keys.size() != 3 || (keys[0] != "library" && keys[0] != "games")) return true;
      if (keys[1] != item) app = title = {};
      item = keys[1];
      if (keys[2] == "app_name") app = text;
      if (keys[2] == "title") title = text;
      if (!app.empty() && !title.empty()) titles.emplace(app, title);
      return titles.size() < kMostEntries;
    });
  }
  return titles;
}

void FindHeroic(const HomeFolders& folders, const TakePrefix& take) {
  for (const fs::path& config : folders.config) {
    const std::vector<fs::path> games = FilesIn(config / "heroic/GamesConfig", ".json");
    const Names titles = games.empty() ? Names() : HeroicTitles(config / "heroic");
    for (const fs::path& file : games) {
      const std::string app = file.stem();
      const auto title = titles.find(app);
      VisitJson(file, [&](Keys keys, const std::string& text) {
        if (!AreKeys(keys, {app, "winePrefix"})) return true;
        const fs::path folder = NamedFolder(text, folders);
        if (!folder.empty()) take(folder, title == titles.end() ? std::string() : title->second);
        return false;
      });
    }
  }
  TakeEach(folders.home / "Games/Heroic/Prefixes", take);
  TakeEach(folders.home / "Games/Heroic/Prefixes/default", take);
}

/// The libraries of a Steam folder: itself, and those that its list names, in the form of today or
/// of yesterday.
std::vector<fs::path> SteamLibraries(const fs::path& steam, const HomeFolders& folders) {
  std::vector<fs::path> libraries{steam};
  for (const char* list : {"steamapps/libraryfolders.vdf", "config/libraryfolders.vdf"}) {
    VisitVdf(steam / list, [&](Keys keys, const std::string& text) {
      const bool names = (keys.size() == 3 && keys[2] == "path") || keys.size() == 2;
      const fs::path folder = names ? NamedFolder(text, folders) : fs::path();
      if (!folder.empty()) libraries.push_back(folder);
      return libraries.size() < kMostEntries;
    });
  }
  return libraries;
}

std::string SteamName(const fs::path& apps, const std::string& number) {
  std::string name;
  VisitVdf(apps / ("appmanifest_" + number + ".acf"), [&](Keys keys, const std::string& text) {
    if (!AreKeys(keys, {"appstate", "name"})) return true;
    name = text;
    return false;
  });
  return name;
}

void FindSteam(const HomeFolders& folders, const TakePrefix& take) {
  std::vector<fs::path> roots;
  for (const char* link : {".steam/steam", ".steam/root", ".steam/debian-installation"})
    roots.push_back(folders.home / link);
  for (const fs::path& data : folders.data) roots.push_back(data / "Steam");
  std::vector<fs::path> seen;
  for (const fs::path& root : roots) {
    for (const fs::path& library : SteamLibraries(root, folders)) {
      std::error_code error;
      const fs::path apps = fs::canonical(library / "steamapps", error);
      if (error || std::ranges::count(seen, apps) > 0) continue;
      seen.push_back(apps);
      for (const fs::path& game : FoldersIn(apps / "compatdata"))
        take(game, SteamName(apps, game.filename()));
    }
  }
}

void FindUmu(const HomeFolders& folders, const TakePrefix& take) {
  TakeEach(folders.home / "Games/umu", take);
}

void FindPlayOnLinux(const HomeFolders& folders, const TakePrefix& take) {
  TakeEach(folders.home / ".PlayOnLinux/wineprefix", take);
}

void FindCrossOver(const HomeFolders& folders, const TakePrefix& take) {
  TakeEach(folders.home / ".cxoffice", take);
}

constexpr PrefixManager kManagers[] = {
    {"Wine", FindWine},
    {"Bottles", FindBottles},
    {"Lutris", FindLutris},
    {"Heroic", FindHeroic},
    {"Steam", FindSteam},
    {"umu", FindUmu},
    {"PlayOnLinux", FindPlayOnLinux},
    {"CrossOver", FindCrossOver},
};

}  // namespace

std::span<const PrefixManager> PrefixManagers() {
  return kManagers;
}

bool IsBelow(const fs::path& path, const fs::path& folder) {
  return std::mismatch(path.begin(), path.end(), folder.begin(), folder.end()).second ==
         folder.end();
}

std::vector<fs::path> FoldersIn(const fs::path& folder) {
  std::vector<fs::path> folders;
  std::error_code error;
  const fs::path real = fs::canonical(folder, error);
  for (fs::directory_iterator entry(error ? fs::path() : real, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code status;
    if (folders.size() >= kMostEntries) break;
    if (!entry->is_directory(status)) continue;
    if (entry->is_symlink(status)) {
      const fs::path target = fs::canonical(entry->path(), status);
      if (status || !IsBelow(target, real)) continue;
    }
    folders.push_back(entry->path());
  }
  std::ranges::sort(folders);
  return folders;
}

}  // namespace torvane::posix
