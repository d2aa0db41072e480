// The theme of all readers: a list's form, and the walk over its store that fills the list.
//
// Every reader sets up the columns, walks over the names in its store, passes over those that are
// no entries, counts, decides what an entry shows and whether it is missing, and adds it. What one
// list does differently from another is data in its ListForm.
#pragma once

#include <span>
#include <vector>

#include "readers/entry_list.h"
#include "storage/variant.h"

namespace torvane {

/// One value of a registry key or one key of an INI section.
struct StoredEntry {
  Text name;
  Variant value;
};

/// Where a list is kept. Reading never fails: what isn't there has no names and empty values.
class ListStore {
 public:
  virtual ~ListStore() = default;
  /// The names to walk over, in their order.
  virtual std::vector<Text> Names() = 0;
  virtual Variant Value(const Text& name) = 0;
};

/// What becomes of an entry in the list (see AddListEntry).
struct ShownEntry {
  int kind = 0;
  Text iconPath = {};
  Text text1 = {};
  Text text2 = {};
  Text text3 = {};
  bool missing = false;
};

enum class CountRule {
  Entries,  ///< TotalCount grows with each entry that isn't passed over
  Names,    ///< TotalCount is the number of names, passed over or not
};

/// How one type of list differs from the others.
struct ListForm {
  std::span<const TextView> columns;
  CountRule counts;
  /// Whether a name is no entry of the list.
  bool (*passesOver)(const MruEntry& list, const StoredEntry& stored);
  ShownEntry (*shows)(const StoredEntry& stored);
};

/// Sets up a list's columns and fills it from `store`.
void FillList(const ListForm& form, const MruEntry& entry, List& list, ListStore& store);
/// The first part of FillList alone: counters reset, columns set up, no items.
void PrepareList(const ListForm& form, List& list);

/// Tests on which forms pass over a name.
bool PassNothing(const MruEntry& list, const StoredEntry& stored);
bool PassEmpty(const MruEntry& list, const StoredEntry& stored);
bool PassEmptyOrCount(const MruEntry& list, const StoredEntry& stored);
bool PassCount(const MruEntry& list, const StoredEntry& stored);

/// A file entry: the icon of the file or the missing mark.
ShownEntry FileEntry(int kind, const EntryPath& path);
/// Name and folder of the file whose path is the data.
ShownEntry ShowFile(const StoredEntry& stored);

/// A folder entry: the icon of the folder or the missing mark.
ShownEntry FolderEntry(const Text& folder, bool found);

inline constexpr TextView kFileColumns[] = {u"File Name", u"File Path"};
inline constexpr TextView kFolderColumns[] = {u"Folder Path"};

}  // namespace torvane
