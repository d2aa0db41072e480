// Every change of the selection is told, whoever makes it: mouse, keys, a screen reader, or the
// control itself when a branch closes over what is chosen. Only when it first gets the focus it
// selects a node that nobody has chosen; that is refused.
//
// The control tells of a click before it has done its own work with it, and of a change in the
// middle. The handler of either fills a list and lets messages run, so it waits in the queue until
// the control is done.
#include "windows/win32/tree.h"

#include "windows/controls/toolkit.h"
#include "windows/win32/drawing.h"
#include "windows/win32/theme.h"

#include <algorithm>

namespace torvane {
namespace {

// The themed tree has its own marks instead of lines.
DWORD LineStyle() {
  return IsThemed() ? 0 : DWORD{TVS_HASLINES};
}

int ImageNumber(const Node& node) {
  return node.Image() > 0 ? node.Image() - 1 : I_IMAGENONE;
}

}  // namespace

Win32Tree::Win32Tree(HWND form, Tree& tree)
    : Win32View(form, tree,
                {.className = WC_TREEVIEWW,
                 .style = WS_TABSTOP | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS |
                          TVS_DISABLEDRAGDROP | TVS_INFOTIP | LineStyle(),
                 .extendedStyle = WS_EX_CLIENTEDGE,
                 .font = {.face = FontUse::Face::Message}}) {
  UseExplorerTheme(window());
  SendMessageW(window(), TVM_SETEXTENDEDSTYLE, TVS_EX_DOUBLEBUFFER, TVS_EX_DOUBLEBUFFER);
  SetWindowSubclass(window(), Procedure, 0, reinterpret_cast<DWORD_PTR>(this));
  Win32Tree::imageListChanged();
  for (int index = 1; index <= tree.Nodes().Count(); ++index) {
    Win32Tree::nodeAdded(tree.Nodes()(index));
  }
  for (int index = 1; index <= tree.Nodes().Count(); ++index) {
    const Node& node = tree.Nodes()(index);
    if (node.Expanded()) Win32Tree::expansionChanged(node);
  }
}

Win32Tree::~Win32Tree() {
  RemoveWindowSubclass(window(), Procedure, 0);
}

LRESULT CALLBACK Win32Tree::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR /*id*/, DWORD_PTR self) {
  auto& tree = *reinterpret_cast<Win32Tree*>(self);
  if (message == WM_KEYDOWN && tree.stepToFirst(wParam)) return 0;
  if (message != WM_SETFOCUS) return DefSubclassProc(window, message, wParam, lParam);
  tree.focusing_ = true;
  const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
  tree.focusing_ = false;
  return result;
}

/// Without a choice the control's keys have nowhere to begin: the first step goes to the first
/// node.
bool Win32Tree::stepToFirst(WPARAM key) {
  const bool steps = key >= VK_PRIOR && key <= VK_DOWN;
  if (!steps || caret() || items_.empty()) return false;
  SendMessageW(window(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(items_.front()));
  return key != VK_END && key != VK_NEXT;
}

HTREEITEM Win32Tree::itemOf(const Node& node) const {
  return items_.at(static_cast<std::size_t>(node.Index() - 1));
}

/// 0 for no item.
int Win32Tree::indexOf(HTREEITEM item) const {
  TVITEMW record{};
  record.mask = TVIF_PARAM;
  record.hItem = item;
  if (item) SendMessageW(window(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&record));
  return static_cast<int>(record.lParam);
}

HTREEITEM Win32Tree::caret() const {
  return reinterpret_cast<HTREEITEM>(SendMessageW(window(), TVM_GETNEXTITEM, TVGN_CARET, 0));
}

int Win32Tree::selected() const {
  return indexOf(caret());
}

void Win32Tree::nodeAdded(const Node& node) {
  TVINSERTSTRUCTW record{};
  record.hParent = node.Parent() ? itemOf(*node.Parent()) : TVI_ROOT;
  record.hInsertAfter = TVI_LAST;
  record.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  record.item.pszText = WideForRecord(node.Text());
  record.item.lParam = node.Index();
  record.item.iImage = ImageNumber(node);
  record.item.iSelectedImage = record.item.iImage;
  items_.push_back(reinterpret_cast<HTREEITEM>(
      SendMessageW(window(), TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&record))));
}

void Win32Tree::imageChanged(const Node& node) {
  TVITEMW item{};
  item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  item.hItem = itemOf(node);
  item.iImage = ImageNumber(node);
  item.iSelectedImage = item.iImage;
  SendMessageW(window(), TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void Win32Tree::dimmedChanged(const Node& node) {
  const HTREEITEM item = itemOf(node);
  const auto child = static_cast<DWORD>(
      SendMessageW(window(), TVM_MAPHTREEITEMTOACCID, reinterpret_cast<WPARAM>(item), 0));
  Describe(window(), child, Text(node.Dimmed() ? kDimmedNote : TextView()));
  RECT place{};
  if (TreeView_GetItemRect(window(), item, &place, FALSE)) {
    InvalidateRect(window(), &place, FALSE);
  }
}

void Win32Tree::expansionChanged(const Node& node) {
  SendMessageW(window(), TVM_EXPAND, node.Expanded() ? TVE_EXPAND : TVE_COLLAPSE,
               reinterpret_cast<LPARAM>(itemOf(node)));
}

void Win32Tree::imageListChanged() {
  const ImageList* pictures = model().Images();
  UniqueImageList images;
  if (pictures) {
    const int size = SystemMetricAt(SM_CXSMICON, dpi());
    images.reset(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, pictures->Count(), 1));
    for (int index = 1; index <= pictures->Count(); ++index) {
      ImageList_ReplaceIcon(images.get(), -1, IconOf((*pictures)(index), size).get());
    }
  }
  SendMessageW(window(), TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(images.get()));
  images_ = std::move(images);
}

void Win32Tree::onRescaled(double factor) {
  Win32Control::onRescaled(factor);
  imageListChanged();
}

void Win32Tree::nodesRemoved(int first) {
  telling_ = false;
  while (items_.size() >= static_cast<std::size_t>(first)) {
    SendMessageW(window(), TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(items_.back()));
    items_.pop_back();
  }
  telling_ = true;
}

void Win32Tree::setSelected(const Node& node) {
  telling_ = false;
  SendMessageW(window(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(itemOf(node)));
  telling_ = true;
}

LRESULT Win32Tree::onNotify(NMHDR& header) {
  switch (header.code) {
    case NM_CUSTOMDRAW:
      return onDraw(reinterpret_cast<NMTVCUSTOMDRAW&>(header));
    case TVN_GETINFOTIPW:
      onInfoTip(reinterpret_cast<NMTVGETINFOTIPW&>(header));
      break;
    case NM_CLICK:
      onClick();
      break;
    case TVN_SELCHANGINGW:
      return focusing_ ? TRUE : FALSE;
    case TVN_SELCHANGEDW:
      onSelectionChanged(reinterpret_cast<NMTREEVIEWW&>(header));
      break;
    case TVN_ITEMEXPANDEDW:
      onExpanded(reinterpret_cast<NMTREEVIEWW&>(header));
      break;
    default:
      break;
  }
  return 0;
}

// The list on show belongs to the selected node, so that has to be seen while the list has the
// focus too; the system's colour for it is next to white in some themes.
LRESULT Win32Tree::onDraw(NMTVCUSTOMDRAW& step) {
  if (step.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  const bool selected = (step.nmcd.uItemState & CDIS_SELECTED) != 0;
  if (selected && GetFocus() != window()) step.clrTextBk = ColorOf(SystemColor::ButtonShadow);
  const auto index = static_cast<int>(step.nmcd.lItemlParam);
  if (!selected && model().Nodes()(index).Dimmed()) step.clrText = ColorOf(SystemColor::GrayText);
  return CDRF_DODEFAULT;
}

void Win32Tree::onInfoTip(NMTVGETINFOTIPW& tip) const {
  const Text& text = model().Nodes()(static_cast<int>(tip.lParam)).Tip();
  if (text.empty() || tip.cchTextMax <= 0) return;
  const std::size_t room = static_cast<std::size_t>(tip.cchTextMax) - 1;
  const std::size_t length = std::min(room, text.size());
  std::copy_n(text.begin(), length, tip.pszText);
  tip.pszText[length] = L'\0';
}

void Win32Tree::onClick() {
  const DWORD position = GetMessagePos();
  TVHITTESTINFO hit{};
  hit.pt = {static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
  ScreenToClient(window(), &hit.pt);
  SendMessageW(window(), TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  const bool again = hit.hItem && (hit.flags & TVHT_ONITEM) != 0 && hit.hItem == caret();
  if (again && changedAt_ != GetMessageTime()) choose(indexOf(hit.hItem));
}

void Win32Tree::onSelectionChanged(const NMTREEVIEWW& change) {
  if (!telling_ || !change.itemNew.hItem) return;
  changedAt_ = GetMessageTime();
  choose(static_cast<int>(change.itemNew.lParam));
}

void Win32Tree::choose(int index) {
  PostMessageW(GetParent(window()), kPostedToControl, reinterpret_cast<WPARAM>(window()), index);
}

void Win32Tree::onPosted(LPARAM index) {
  Tree& tree = model();
  // The node may have gone meanwhile.
  if (index < 1 || index > tree.Nodes().Count()) return;
  Deliver([&tree, index] { tree.NodeClick(tree.Nodes()(static_cast<int>(index))); });
}

void Win32Tree::onExpanded(const NMTREEVIEWW& change) {
  Node& node = model().Nodes()(static_cast<int>(change.itemNew.lParam));
  const bool expanded = change.action == TVE_EXPAND;
  // The model's own change comes back here, and has been told already.
  if (node.Expanded() == expanded) return;
  Deliver([&node, expanded] { node.Expanded(expanded); });
}

}  // namespace torvane
