// The list of entries: how an item comes into it, what stands beside it, and the counters.
#pragma once

#include <cstdint>

#include "readers/MruEntry.h"
#include "storage/paths.h"
#include "windows/controls/list.h"

namespace torvane {

/// Counters of the list on show.
struct ListCounters {
  std::int32_t TotalCount = 0;    ///< entries, as the list's reader counts them
  std::int32_t MissingCount = 0;  ///< entries whose target is gone
  std::int32_t DeletedCount = 0;  ///< entries deleted since the list was read
};

/// The counters, which live as long as the program.
ListCounters& Counters();
void ResetCounters();

/// The columns that a kind of entry sets, of its three texts; null for a kind that isn't known.
struct ListKindRow {
  int kind;
  unsigned flags;  ///< how the shell finds the icon
  int text;        ///< which text stands in the column, 0 for none
  int subItem1;
  int subItem2;
};
const ListKindRow* FindListKind(int ListKind);

/// What a row says of its place; empty for one that was found.
TextView NoteOn(Presence presence);
/// Whether a row's note says that its place can't be reached.
bool SaysUnreachable(TextView note);

/// Adds an item behind the others; the only way into the list. `ListKind` says which texts stand in
/// which column and how the shell finds the icon of `IconPath`; a kind that isn't known adds
/// nothing. `Number` is the item's own. Gives the item, null for none.
ListItem* AddListEntry(List& list, int ListKind, const Text& IconPath, const Text& Text1,
                       const Text& Text2, const Text& Tag, const Text& Text3,
                       std::size_t Number = 0);

/// Forgets which pictures the shell has given for what; each fill asks anew.
void ForgetImages();

/// Empties columns and items and lets pending window messages run.
void ClearEntryList(List& list);

/// Gives the list's window the shell's image list (`kind` LVSIL_SMALL), or 0 to let go of it.
LRESULT SetListImageList(HWND window, LPARAM imageList, WPARAM kind);

/// A path taken apart as the file lists show it, all in lower case and long names.
struct EntryPath {
  Text fullPath;
  Text sought;           ///< the same in the case in which it is looked for
  bool isPlain = false;  ///< it holds neither quotes nor wildcards
  Text fileName;
  Text folderPath;  ///< closed by a backslash only where it is a root; empty for a bare name
};
EntryPath SplitEntryPath(const Text& text);

}  // namespace torvane
