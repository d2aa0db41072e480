// Which reader answers to which list type.
#pragma once

#include "readers/MruEntry.h"
#include "windows/controls/list.h"

namespace torvane {

/// Fills the list by the reader of the entry's ListType. A type that no reader answers to leaves
/// the list as it is; the comparison is of texts, so "00" is no type.
void FillByListType(const MruEntry& entry, List& list);

}  // namespace torvane
