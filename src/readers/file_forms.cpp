// Lists whose entries are files or folders, one a value of a registry key.

#include "readers/list_form.h"
#include "storage/clsParse.h"

namespace torvane {
namespace {

constexpr TextView kFavoriteColumns[] = {u"File Name", u"Favorite Name", u"File Path"};

ShownEntry ShowFavorite(const NamedValue& value) {
  clsParse parser;
  const std::int32_t parts = parser.Initialise(AsText(value.value), u"|");
  const Text path = parser.ElementAsString(2);
  ShownEntry shown = FileEntry(1, SplitEntryPath(path));
  shown.text3 = parser.ElementAsString(1);
  const bool readsWhole = parts == 2 && !HasWildcard(path);
  shown.written = readsWhole ? std::optional(shown.text3 + u'|' + *shown.written) : std::nullopt;
  return shown;
}

Text FavoriteInColumns(const ListItem& item) {
  return item.SubItems(1) + u'|' + FileText(item, 2);
}

// What stands behind the path isn't read; the owning program expects something there.
constexpr TextView kBehindComma = u",1";

// This one list shows its folders closed by a backslash, as many as they were stored with.
ShownEntry ShowFileBeforeComma(const NamedValue& value) {
  clsParse parser;
  const std::int32_t parts = parser.Initialise(AsText(value.value), u",");
  const Text text = parser.ElementAsString(1);
  EntryPath path = SplitEntryPath(text);
  path.folderPath =
      AddBackslash(path.fullPath.substr(0, path.fullPath.size() - path.fileName.size()));
  ShownEntry shown = FileEntry(4, std::move(path));
  shown.written->append(kBehindComma);
  if (parts == 0 || HasWildcard(text)) shown.written.reset();
  return shown;
}

// A bare name shows the folder "\".
Text FileBeforeCommaInColumns(const ListItem& item) {
  const Text path = item.SubItems(1) == u"\\" ? item.Text() : FileText(item, 1);
  return path + Text(kBehindComma);
}

bool PassUnnamed(const MruEntry& /*list*/, const NamedValue& value) {
  return value.name.empty();
}

ShownEntry ShowValueName(const NamedValue& value) {
  return FileEntry(5, SplitEntryPath(value.name));
}

bool PassNumberOrCount(const MruEntry& list, const NamedValue& value) {
  return value.name == list.CountValue || IsNumeric(value.value);
}

// A drive is never missing, whether or not there is a medium in it.
ShownEntry ShowFolder(const NamedValue& value) {
  Text sought = RemoveBackslash(AsText(value.value));
  const Presence presence = FolderPresence(sought);
  if (presence != Presence::Found && sought.size() == 2) {
    return FolderEntry(AddBackslash(sought), Presence::Found);
  }
  return FolderEntry(sought, presence);
}

}  // namespace

constexpr ListForm kFileForm{kFileColumns, CountRule::Entries, PassEmptyOrCount, ShowFile,
                             FileInColumns};
constexpr ListForm kStoredFileForm{kFileColumns, CountRule::Entries, PassNothing, ShowFile,
                                   nullptr};
constexpr ListForm kFavoritesForm{kFavoriteColumns, CountRule::Entries, PassEmptyOrCount,
                                  ShowFavorite, FavoriteInColumns};
constexpr ListForm kFolderForm{kFolderColumns, CountRule::Entries, PassNumberOrCount, ShowFolder,
                               FirstColumn};
constexpr ListForm kCommaForm{kFileColumns, CountRule::Entries, PassEmptyOrCount,
                              ShowFileBeforeComma, FileBeforeCommaInColumns};
constexpr ListForm kValueNameForm{kFileColumns, CountRule::Entries, PassUnnamed, ShowValueName,
                                  nullptr};

}  // namespace torvane
