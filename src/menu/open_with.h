// Opening entries of the list with the program that owns it.
#pragma once

#include "windows/controls/list.h"

namespace torvane {

/// Starts the program at `programPath` (as its App Paths key gives it) with the selected entries on
/// its command line, in the way that program takes them. Does nothing for a program that isn't
/// known and for an entry whose file is missing. The user is told of a program that can't be
/// started, and of an entry with a double quote where it would have to stand in quotes.
void OpenWithProgram(const Text& programPath, List& list);

}  // namespace torvane
