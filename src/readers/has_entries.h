// Whether a list has something to show, without filling it.
#pragma once

#include "readers/MruEntry.h"

namespace torvane {

/// Whether the list of a row has an entry. Looks no further than the first one, and at no file that
/// an entry names. True too for a list in an INI file whose folder the user was never asked for:
/// nobody knows what it holds.
bool HasEntries(const MruEntry& row);

}  // namespace torvane
