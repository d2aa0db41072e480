// The list's popup menu: its items, and which of them a right-click makes usable.
#pragma once

#include "editing/undo_store.h"
#include "windows/controls/form.h"
#include "windows/controls/list.h"
#include "windows/controls/tree.h"

namespace torvane {

/// The items of the menu "Edit", which stands on no menu bar and serves only as the list's popup.
struct EditMenu {
  /// Adds the menu to a form's menu bar, hidden.
  explicit EditMenu(MenuItem& menuBar);

  MenuItem& mnuEdit;
  /// Its Tag holds the program's path as the App Paths key gives it.
  MenuItem& mnuEditOpenWithProgram;
  MenuItem& mnuEditSep;
  MenuItem& mnuEditSelected;
  MenuItem& mnuEditMissing;
  MenuItem& mnuEditAll;
  MenuItem& mnuEditUndoSep;
  /// There only while the list on show has something to take back.
  MenuItem& mnuEditUndo;
};

/// What the popup is decided from.
struct PopupContext {
  List& list;
  Tree& tree;
  EditMenu& menu;
  const UndoStore& undo;
};

/// Answers a notification of the list's window: a right-click (NMITEMACTIVATE) sets the menu up by
/// where it fell, the kind of list, the rows and the selection, and pops it up there. 1 for a
/// right-click, which is finished with then, else 0.
LRESULT OnListNotify(const PopupContext& context, HWND hWnd, LPARAM lParam);

}  // namespace torvane
