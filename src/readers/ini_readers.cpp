// Readers of lists in INI files. Two of the files lie in the Windows folder; where the other two
// lie, the user is asked once.

#include <optional>

#include "readers/basListFill.h"
#include "readers/ini_folders.h"
#include "readers/list_stores.h"

namespace torvane {
namespace {

// Unlike the registry's folder lists, this one knows no drives.
ShownEntry ShowIniFolder(const StoredEntry& stored) {
  Text folder = LowerCase(AsText(stored.value));
  const bool found = FolderExists(folder);
  return FolderEntry(folder, found);
}

constexpr ListForm kIniFiles{kFileColumns, CountRule::Entries, PassEmpty, ShowFile};
constexpr ListForm kIniFolders{kFolderColumns, CountRule::Entries, PassNothing, ShowIniFolder};

Text InWindowsFolder(const MruEntry& entry) {
  return AddBackslash(GetWindowsFolder()) + entry.Location;
}

// The INI file in the folder that the store has for the program, or that the user chooses now.
std::optional<Text> InStoredFolder(const MruEntry& entry, const List& list) {
  clsRegistry registry;
  SelectIniFolder(registry, entry.EntryName);
  if (!registry.KeyExists()) registry.CreateKey();
  if (Length(registry.Value()) == 0 && !FindIniFolder(entry, registry, list)) return std::nullopt;
  return AsText(registry.Value()) + entry.Location;
}

template <class Store>
void FillFromIni(const ListForm& form, const MruEntry& entry, List& list, const Text& path) {
  Store store(entry, path);
  FillList(form, entry, list, store);
}

void FillFromStoredFolder(const ListForm& form, const MruEntry& entry, List& list) {
  if (const auto path = InStoredFolder(entry, list)) {
    FillFromIni<IniListStore>(form, entry, list, *path);
  } else {
    PrepareList(form, list);
  }
}

}  // namespace

void FillIniList(const MruEntry& Entry, List& list) {
  FillFromIni<IniListStore>(kIniFiles, Entry, list, InWindowsFolder(Entry));
}

void FillIniFolderList(const MruEntry& Entry, List& list) {
  FillFromStoredFolder(kIniFolders, Entry, list);
}

void FillInstalledIniList(const MruEntry& Entry, List& list) {
  FillFromStoredFolder(kIniFiles, Entry, list);
}

void FillWinIniList(const MruEntry& Entry, List& list) {
  FillFromIni<NumberedIniListStore>(kIniFiles, Entry, list, InWindowsFolder(Entry));
}

}  // namespace torvane
