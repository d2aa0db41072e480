// Readers of lists whose entries are files or folders, one a value of a registry key.

#include "readers/basListFill.h"
#include "readers/list_stores.h"
#include "storage/clsParse.h"

namespace torvane {
namespace {

constexpr TextView kFavoriteColumns[] = {u"File Name", u"Favorite Name", u"File Path"};

ShownEntry ShowFavorite(const StoredEntry& stored) {
  clsParse parser;
  parser.Initialise(AsText(stored.value), u"|");
  ShownEntry shown = FileEntry(1, SplitEntryPath(parser.ElementAsString(2)));
  shown.text3 = parser.ElementAsString(1);
  return shown;
}

// This one list shows its folders closed by a backslash, as many as they were stored with.
ShownEntry ShowFileBeforeComma(const StoredEntry& stored) {
  clsParse parser;
  parser.Initialise(AsText(stored.value), u",");
  EntryPath path = SplitEntryPath(parser.ElementAsString(1));
  path.folderPath =
      AddBackslash(path.fullPath.substr(0, path.fullPath.size() - path.fileName.size()));
  return FileEntry(4, path);
}

bool PassUnnamed(const MruEntry& /*list*/, const StoredEntry& stored) {
  return stored.name.empty();
}

ShownEntry ShowValueName(const StoredEntry& stored) {
  return FileEntry(5, SplitEntryPath(stored.name));
}

bool PassNumberOrCount(const MruEntry& list, const StoredEntry& stored) {
  return stored.name == list.CountValue || IsNumeric(stored.value);
}

// A drive is never missing, whether or not there is a medium in it.
ShownEntry ShowFolder(const StoredEntry& stored) {
  Text folder = RemoveBackslash(LowerCase(AsText(stored.value)));
  if (FolderExists(folder)) return FolderEntry(folder, true);
  if (folder.size() == 2) return FolderEntry(AddBackslash(folder), true);
  return FolderEntry(folder, false);
}

constexpr ListForm kPlain{kFileColumns, CountRule::Entries, PassEmptyOrCount, ShowFile};
constexpr ListForm kFavorites{kFavoriteColumns, CountRule::Entries, PassEmptyOrCount, ShowFavorite};
constexpr ListForm kFolders{kFolderColumns, CountRule::Entries, PassNumberOrCount, ShowFolder};
constexpr ListForm kComma{kFileColumns, CountRule::Entries, PassEmptyOrCount, ShowFileBeforeComma};
constexpr ListForm kValueNames{kFileColumns, CountRule::Entries, PassUnnamed, ShowValueName};

}  // namespace

void FillRegistryList(const MruEntry& Entry, List& list) {
  FillRegistryForm(kPlain, Entry, list);
}

void FillFavoritesList(const MruEntry& Entry, List& list) {
  FillRegistryForm(kFavorites, Entry, list);
}

void FillFolderList(const MruEntry& Entry, List& list) {
  FillRegistryForm(kFolders, Entry, list);
}

void FillCommaList(const MruEntry& Entry, List& list) {
  FillRegistryForm(kComma, Entry, list);
}

void FillValueNameList(const MruEntry& Entry, List& list) {
  FillRegistryForm(kValueNames, Entry, list);
}

}  // namespace torvane
