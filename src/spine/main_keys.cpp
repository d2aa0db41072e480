// The keys of the main window. A key that has nothing to do here goes on to the control with the
// focus; those that menus and buttons know of themselves (F10, Alt and a letter, the menu key) are
// the views' affair.

#include <array>

#include "spine/frmMain.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

/// A cell as a field of a line: what would end field or line becomes a blank.
Text Field(const Text& cell) {
  Text field = cell;
  for (char16_t& unit : field) {
    if (unit == u'\t' || unit == u'\r' || unit == u'\n') unit = u' ';
  }
  return field;
}

Text TabbedLine(const ListItem& item, int columns) {
  Text line = Field(item.Text());
  for (int column = 1; column < columns; ++column) line += u'\t' + Field(item.SubItems(column));
  return line + u"\r\n";
}

}  // namespace

void frmMain::Form_KeyDown(int& KeyCode, int Shift) {
  struct Row {
    int key;
    int held;
    bool (frmMain::*answer)();
  };
  static constexpr std::array<Row, 7> kKeys = {{
      {kKeyDelete, 0, &frmMain::DeleteKey},
      {'A', kControlKey, &frmMain::SelectAllKey},
      {'C', kControlKey, &frmMain::CopyKey},
      {'Z', kControlKey, &frmMain::UndoKey},
      {kKeyF5, 0, &frmMain::ReadAnewKey},
      {kKeyEscape, 0, &frmMain::DropSelectionKey},
      {kKeyDown, 0, &frmMain::FirstRowKey},
  }};
  for (const Row& row : kKeys) {
    if (row.key == KeyCode && row.held == Shift && (this->*row.answer)()) {
      KeyCode = 0;
      return;
    }
  }
}

// Only where the keys go to the list: in the tree nobody means its rows.
bool frmMain::DeleteKey() {
  if (!lvwMRU.HasFocus()) return false;
  turns_.take([this] {
    if (lvwMRU.SelectedCount() > 0) mnuEditSelected_Click();
  });
  return true;
}

bool frmMain::SelectAllKey() {
  lvwMRU.SelectAll(true);
  lvwMRU.SetFocus();
  return true;
}

bool frmMain::CopyKey() {
  Text lines;
  for (int n = 1; n <= lvwMRU.ListItems().Count(); ++n) {
    const ListItem& item = lvwMRU.ListItems()(n);
    if (item.Selected()) lines += TabbedLine(item, lvwMRU.ColumnHeaders().Count());
  }
  // What somebody else has put on the clipboard stays where there is nothing to copy.
  if (!lines.empty()) CurrentToolkit().CopyText(lines);
  return true;
}

bool frmMain::UndoKey() {
  turns_.take([this] { mnuEditUndo_Click(); });
  return true;
}

bool frmMain::ReadAnewKey() {
  if (Node* node = tvwMRU.SelectedItem()) turns_.choose(*node);
  LookForLists();
  FindLists();
  return true;
}

// A drag of the bar has the first claim on Escape.
bool frmMain::DropSelectionKey() {
  if (splitter_.Dragging() || lvwMRU.SelectedCount() == 0) return false;
  lvwMRU.SelectAll(false);
  return true;
}

// A list that has just been filled has the focus on its first row or on none, and the control's
// own step would leave the first row out.
bool frmMain::FirstRowKey() {
  if (!lvwMRU.HasFocus() || lvwMRU.ListItems().Count() == 0) return false;
  const ListItem* current = lvwMRU.SelectedItem();
  if (lvwMRU.SelectedCount() > 0 || (current && current->Index() > 1)) return false;
  lvwMRU.SelectedItem(lvwMRU.ListItems()(1));
  return true;
}

}  // namespace torvane
