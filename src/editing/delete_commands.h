// The commands that delete entries of the list on show, and the one that takes a deletion back.
#pragma once

#include "editing/undo_store.h"
#include "windows/controls/form.h"
#include "windows/controls/tree.h"

namespace torvane {

/// What the commands work on: the list, the bar that shows the counters, the tree for the program's
/// name, and what has been deleted before.
struct DeleteContext {
  List& list;
  StatusBar& status;
  Tree& tree;
  UndoStore& undo;
};

// Each deletes entries of the list, which has at least one item, and shows the new counters. A list
// that another program has changed is shown anew, and the user is told. Throws what the engine
// throws; rows, selection and counters are then as they were.
void DeleteSelectedEntries(const DeleteContext& context);
void DeleteMissingEntries(const DeleteContext& context);
void DeleteAllEntries(const DeleteContext& context);

/// Takes back the last deletion of the list on show; does nothing where there is none. Told and
/// thrown as above, and the deletion can still be taken back then.
void UndoDelete(const DeleteContext& context);

/// Tells in the hints of list and status bar whether UndoDelete has something to take back.
void ShowUndoHint(const DeleteContext& context);

}  // namespace torvane
