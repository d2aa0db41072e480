// How the entries of a list are shown and written: what one list does differently from another, as
// data and small functions.
//
// Every reader sets up the columns, walks over the values of its store, passes over those that are
// no entries, counts, decides what an entry shows and whether it is missing, and adds it.
#pragma once

#include <optional>
#include <span>

#include "readers/entry_list.h"
#include "storage/variant.h"

namespace torvane {

/// A value of a list's store as it reads.
struct NamedValue {
  Text name;
  Variant value;
};

/// What becomes of an entry in the list (see AddListEntry).
struct ShownEntry {
  int kind = 0;
  Text iconPath = {};
  Text text1 = {};
  Text text2 = {};
  Text text3 = {};
  Presence presence = Presence::Found;  ///< of the place that the entry names, if it can be gone
  bool isPinned = false;                ///< never counted as missing
  /// The text that stands for the entry in a rewritten list; nothing where the value holds more
  /// than was read of it.
  std::optional<Text> written = {};

  bool IsMissing() const {
    return !isPinned && (presence == Presence::Missing || presence == Presence::RootMissing);
  }
};

enum class CountRule {
  Entries,  ///< TotalCount grows with each entry that isn't passed over
  Names,    ///< TotalCount is the number of names, passed over or not
};

/// How one type of list differs from the others.
struct ListForm {
  std::span<const TextView> columns;
  CountRule counts;
  /// Whether a value is no entry of the list.
  bool (*passesOver)(const MruEntry& list, const NamedValue& value);
  ShownEntry (*shows)(const NamedValue& value);
  /// The text that stands for an item in its store, from the item's columns; null where a value
  /// stays as it is stored.
  Text (*writes)(const ListItem& item);
};

/// Tests on which forms pass over a value.
bool PassNothing(const MruEntry& list, const NamedValue& value);
bool PassEmpty(const MruEntry& list, const NamedValue& value);
bool PassEmptyOrCount(const MruEntry& list, const NamedValue& value);
bool PassCount(const MruEntry& list, const NamedValue& value);

/// A file entry: the icon of the file or the missing mark.
ShownEntry FileEntry(int kind, EntryPath path);
/// Name and folder of the file whose path is the data.
ShownEntry ShowFile(const NamedValue& value);

/// A folder entry: the icon of the folder or the missing mark. The row is in lower case, the folder
/// looked for in the case that `sought` has.
ShownEntry FolderEntry(const Text& sought, Presence presence);

/// The path in the columns of a file list, the folder standing in `folderColumn`; the name alone
/// for a file without a folder.
Text FileText(const ListItem& item, int folderColumn);
/// That path where the folder is the second column.
Text FileInColumns(const ListItem& item);
/// The first column.
Text FirstColumn(const ListItem& item);

inline constexpr TextView kFileColumns[] = {u"File Name", u"File Path"};
inline constexpr TextView kFolderColumns[] = {u"Folder Path"};

// The forms of the list types, by theme: file_readers.cpp, text_readers.cpp, ini_readers.cpp.
extern const ListForm kFileForm;
extern const ListForm kStoredFileForm;  ///< the same, survivors as they are stored
extern const ListForm kFavoritesForm;
extern const ListForm kFolderForm;
extern const ListForm kCommaForm;
extern const ListForm kValueNameForm;
extern const ListForm kUrlForm;
extern const ListForm kFindReplaceForm;
extern const ListForm kRegEditForm;
extern const ListForm kCommandForm;
extern const ListForm kHostForm;
extern const ListForm kIniFileForm;
extern const ListForm kIniFolderForm;

}  // namespace torvane
