#include "menu/edit_menu.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/winapi.h"
#include "readers/entry_list.h"
#include "storage/clsParse.h"
#include "storage/clsRegistry.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

// Which whole-list items a list's type can enable.
enum class ListGroup { None, Plain, Files };

struct GroupRow {
  TextView listType;
  ListGroup group;
};

constexpr std::array<GroupRow, 14> kGroups = {{
    {u"2", ListGroup::Plain},
    {u"6", ListGroup::Plain},
    {u"8", ListGroup::Plain},
    {u"9", ListGroup::Plain},
    {u"11", ListGroup::Plain},
    {u"0", ListGroup::Files},
    {u"1", ListGroup::Files},
    {u"3", ListGroup::Files},
    {u"4", ListGroup::Files},
    {u"5", ListGroup::Files},
    {u"20", ListGroup::Files},
    {u"21", ListGroup::Files},
    {u"22", ListGroup::Files},
    {u"23", ListGroup::Files},
}};

ListGroup GroupOf(TextView listType) {
  const auto* row = std::find_if(kGroups.begin(), kGroups.end(), [&](const GroupRow& candidate) {
    return candidate.listType == listType;
  });
  return row == kGroups.end() ? ListGroup::None : row->group;
}

bool ClickedOnRow(HWND hWnd) {
  LVHITTESTINFO hit{};
  GetCursorPos(&hit.pt);
  ScreenToClient(hWnd, &hit.pt);
  SendMessageA(hWnd, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  return (hit.flags & (LVHT_ONITEMICON | LVHT_ONITEMLABEL | LVHT_ONITEMSTATEICON)) != 0;
}

void Reset(EditMenu& menu) {
  menu.mnuEditAll.Enabled = false;
  menu.mnuEditMissing.Enabled = false;
  menu.mnuEditSelected.Enabled = false;
  menu.mnuEditOpenWithProgram.Visible = false;
  menu.mnuEditSep.Visible = false;
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
  if (SendMessageA(hWnd, LVM_GETSELECTEDCOUNT, 0, 0) == 0) return;
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

void PopUpBesideRows(const PopupContext& context, ListGroup group) {
  const bool empty = context.list.ListItems().Count() == 0;
  if (group == ListGroup::None || (group == ListGroup::Files && empty)) return;
  EnableWholeList(context, group);
  CurrentToolkit().ShowPopup(context.list.Parent(), context.menu.mnuEdit, &context.menu.mnuEditAll);
}

void PopUpOnRow(const PopupContext& context, ListGroup group, HWND hWnd) {
  EnableWholeList(context, group);
  EnableForSelection(context, hWnd);
  CurrentToolkit().ShowPopup(context.list.Parent(), context.menu.mnuEdit, nullptr);
}

}  // namespace

EditMenu::EditMenu(MenuItem& menuBar)
    : mnuEdit(menuBar.Add(u"Edit")),
      mnuEditOpenWithProgram(mnuEdit.Add(u"")),
      mnuEditSep(mnuEdit.Add(u"-")),
      mnuEditSelected(mnuEdit.Add(u"Delete Selected")),
      mnuEditMissing(mnuEdit.Add(u"Delete Missing")),
      mnuEditAll(mnuEdit.Add(u"Delete All")) {
  mnuEdit.Visible = false;
}

LRESULT OnListNotify(const PopupContext& context, HWND hWnd, LPARAM lParam) {
  const auto* header = reinterpret_cast<const NMHDR*>(lParam);
  if (header->code != NM_RCLICK) return 0;
  const bool onRow = ClickedOnRow(hWnd);
  Reset(context.menu);
  const ListGroup group = GroupOf(context.list.Tag());
  if (onRow) {
    PopUpOnRow(context, group, hWnd);
  } else {
    PopUpBesideRows(context, group);
  }
  return 1;
}

}  // namespace torvane
