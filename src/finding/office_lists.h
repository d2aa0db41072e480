// The lists of Microsoft Office: "Item 1" and on hold "[F00000001][T01D5E2C6F3C0A2F0][O00000000]*"
// and a path. F has flags, the first of them for a pinned entry; T the time of the last use.
#pragma once

#include "readers/entry_names.h"
#include "readers/list_form.h"
#include "storage/value_store.h"

namespace torvane {

/// An entry taken apart.
struct OfficeItem {
  bool isPinned = false;
  std::uint64_t time = 0;  ///< in 100 ns since 1601, 0 for none
  Text path;
};

/// The entry that a text is; nothing where it has another form.
std::optional<OfficeItem> ReadOfficeItem(TextView text);

/// Whether a key below Software is where Office keeps such a list.
bool IsOfficeKey(TextView key);
/// Whether at least one of the values is an entry.
bool HasOfficeItems(const StorePicture& picture);
EntryNames OfficeNames();

/// Name and folder, and when the entry was last used. Pinned entries say so, and what can't be
/// looked for, such as a web address, is no more missing than they are.
extern const ListForm kOfficeForm;

/// A time in 100 ns since 1601 as "2024-03-05 14:22", in the user's zone; empty for none.
Text LocalTimeText(std::uint64_t time);

}  // namespace torvane
