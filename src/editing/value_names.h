// How a surviving entry is named and written when its list is rewritten: what the program knows of
// other programs' list formats.
#pragma once

#include "storage/text.h"
#include "windows/controls/list.h"

namespace torvane {

/// The name of entry `n` (from 1, in list order) under a name form, which is a row's ValuePrefix
/// followed by its FirstIndex. Empty for a form that isn't known.
Text EntryValueName(const Text& NameForm, int n);

/// The text that stands for a list item in its store, put together from the item's columns.
Text EntryValueText(const Text& ListType, const ListItem& Item);

}  // namespace torvane
