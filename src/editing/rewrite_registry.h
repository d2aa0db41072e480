// Rewriting a list in the registry from what is left of it on the screen.
#pragma once

#include "windows/controls/list.h"

namespace torvane {

// The list has at least one item; its first one tells where the list lives. Each engine prunes the
// list, takes the old entries out of the key and puts the survivors back under names without gaps.
// The first error of the registry is thrown as RaisedError and ends the engine where it stands.
void DeleteMissingFromRegistry(List& list);
void DeleteSelectedFromRegistry(List& list);
/// Sets the counters to 0 too.
void DeleteAllFromRegistry(List& list);

}  // namespace torvane
