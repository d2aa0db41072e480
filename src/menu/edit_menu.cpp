#include "menu/edit_menu.h"

#include <optional>

#include "platform/winapi.h"
#include "readers/list_description.h"
#include "storage/clsParse.h"
#include "storage/clsRegistry.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

ListGroup GroupOf(TextView listType) {
  const ListType* type = FindListType(listType);
  return type ? type->group : ListGroup::None;
}

// The mouse may have moved on since the click, so the click's own place counts.
bool ClickedOnRow(HWND hWnd, POINT client) {
  LVHITTESTINFO hit{};
  hit.pt = client;
  SendMessageW(hWnd, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  return (hit.flags & (LVHT_ONITEMICON | LVHT_ONITEMLABEL | LVHT_ONITEMSTATEICON)) != 0;
}

void Reset(const PopupContext& context) {
  EditMenu& menu = context.menu;
  menu.mnuEditAll.Enabled = false;
  menu.mnuEditMissing.Enabled = false;
  menu.mnuEditSelected.Enabled = false;
  menu.mnuEditOpenWithProgram.Visible = false;
  menu.mnuEditSep.Visible = false;
  const bool canUndo = context.undo.LastOf(context.list) != nullptr;
  menu.mnuEditUndoSep.Visible = canUndo;
  menu.mnuEditUndo.Visible = canUndo;
}

void EnableWholeList(const PopupContext& context, ListGroup group) {
  if (group == ListGroup::None || context.list.ListItems().Count() == 0) return;
  context.menu.mnuEditAll.Enabled = true;
  context.menu.mnuEditMissing.Enabled = group == ListGroup::Files && Counters().MissingCount >= 1;
}

// The owning program of the list on show, "*" for none.
Text ExeNameOf(Tree& tree) {
  const Node* node = tree.SelectedItem();
  if (!node) return Text(kNone);
  clsParse parser;
  return parser.ElementAsString(parser.Initialise(node->Tag(), kFieldSeparators));
}

// The path that the program registered, nothing where it registered none.
std::optional<Text> AppPath(const Text& exeName) {
  clsRegistry registry;
  registry.ClassKey(kLocalMachine);
  registry.SectionKey(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + exeName);
  if (!registry.KeyExists()) return std::nullopt;
  registry.ValueKey(Text());
  return AsText(registry.Value());
}

void EnableForSelection(const PopupContext& context, HWND hWnd) {
  if (SendMessageW(hWnd, LVM_GETSELECTEDCOUNT, 0, 0) == 0) return;
  EditMenu& menu = context.menu;
  const Text exeName = ExeNameOf(context.tree);
  if (exeName != kNone) {
    if (const auto path = AppPath(exeName)) {
      menu.mnuEditOpenWithProgram.Tag = *path;
      menu.mnuEditOpenWithProgram.Caption = u"Open with " + exeName;
      menu.mnuEditOpenWithProgram.Visible = true;
      menu.mnuEditSep.Visible = true;
    }
  }
  menu.mnuEditSelected.Enabled = true;
}

void PopUpBesideRows(const PopupContext& context, ListGroup group, POINT screen) {
  const bool empty = context.list.ListItems().Count() == 0;
  const bool hasUsable = group == ListGroup::Plain || !empty || context.menu.mnuEditUndo.Visible;
  if (group == ListGroup::None || !hasUsable) return;
  EnableWholeList(context, group);
  CurrentToolkit().ShowPopup(context.list.Parent(), context.menu.mnuEdit, &context.menu.mnuEditAll,
                             screen);
}

void PopUpOnRow(const PopupContext& context, ListGroup group, HWND hWnd, POINT screen) {
  EnableWholeList(context, group);
  EnableForSelection(context, hWnd);
  CurrentToolkit().ShowPopup(context.list.Parent(), context.menu.mnuEdit, nullptr, screen);
}

}  // namespace

EditMenu::EditMenu(MenuItem& menuBar)
    : mnuEdit(menuBar.Add(u"Edit")),
      mnuEditOpenWithProgram(mnuEdit.Add(u"")),
      mnuEditSep(mnuEdit.Add(u"-")),
      mnuEditSelected(mnuEdit.Add(u"Delete Selected")),
      mnuEditMissing(mnuEdit.Add(u"Delete Missing")),
      mnuEditAll(mnuEdit.Add(u"Delete All")),
      mnuEditUndoSep(mnuEdit.Add(u"-")),
      mnuEditUndo(mnuEdit.Add(u"Undo Delete")) {
  mnuEdit.Visible = false;
}

LRESULT OnListNotify(const PopupContext& context, HWND hWnd, LPARAM lParam) {
  const auto* header = reinterpret_cast<const NMHDR*>(lParam);
  if (header->code != NM_RCLICK) return 0;
  POINT place = reinterpret_cast<const NMITEMACTIVATE*>(lParam)->ptAction;
  const bool onRow = ClickedOnRow(hWnd, place);
  ClientToScreen(hWnd, &place);
  Reset(context);
  const ListGroup group = GroupOf(context.list.Tag());
  if (onRow) {
    PopUpOnRow(context, group, hWnd, place);
  } else {
    PopUpBesideRows(context, group, place);
  }
  return 1;
}

}  // namespace torvane
