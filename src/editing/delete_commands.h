// The three commands that delete entries of the list on show.
#pragma once

#include "windows/controls/form.h"
#include "windows/controls/list.h"
#include "windows/controls/tree.h"

namespace torvane {

/// What the commands work on: the list, the bar that shows the counters, the tree for the program's
/// name.
struct DeleteContext {
  List& list;
  StatusBar& status;
  Tree& tree;
};

// Each picks the engine by the first item's list type, runs it and shows the new counters. The list
// has at least one item. Throws what the engine throws, before the status bar changes.
void DeleteSelectedEntries(const DeleteContext& context);
void DeleteMissingEntries(const DeleteContext& context);
void DeleteAllEntries(const DeleteContext& context);

}  // namespace torvane
