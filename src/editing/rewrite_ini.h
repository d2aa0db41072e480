// Rewriting a list in an INI file from what is left of it on the screen.
#pragma once

#include "windows/controls/list.h"

namespace torvane {

// As rewrite_registry.h, for the lists in INI files. Nothing is raised: a file that can't be
// written stays as it was.
void DeleteMissingFromIni(List& list);
void DeleteSelectedFromIni(List& list);
/// Sets the counters to 0 too.
void DeleteAllFromIni(List& list);

}  // namespace torvane
