// The tree tells of a click before it has done its own work with it, and of a key after. The
// handler of either fills a list and may let messages run, so it waits in the queue until the tree
// is done.
#include "windows/win32/win32_tree.h"

#include "windows/controls/toolkit.h"
#include "windows/win32/win32_drawing.h"

#include <uxtheme.h>

namespace torvane {
namespace {

// The themed tree has its own marks instead of lines.
DWORD LineStyle() {
  return IsAppThemed() ? 0 : DWORD{TVS_HASLINES};
}

int ImageNumber(const Node& node) {
  return node.Image() > 0 ? node.Image() - 1 : I_IMAGENONE;
}

}  // namespace

Win32Tree::Win32Tree(HWND form, Tree& tree, Win32Fonts& fonts)
    : Win32View(form, tree,
                {.className = WC_TREEVIEWW,
                 .style = WS_TABSTOP | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS |
                          TVS_DISABLEDRAGDROP | LineStyle(),
                 .extendedStyle = WS_EX_CLIENTEDGE,
                 .font = fonts.message()}) {
  SetWindowTheme(window(), L"Explorer", nullptr);
  Win32Tree::imageListChanged();
  for (int index = 1; index <= tree.Nodes().Count(); ++index) {
    Win32Tree::nodeAdded(tree.Nodes()(index));
  }
  for (int index = 1; index <= tree.Nodes().Count(); ++index) {
    const Node& node = tree.Nodes()(index);
    if (node.Expanded()) Win32Tree::expansionChanged(node);
  }
}

HTREEITEM Win32Tree::itemOf(const Node& node) const {
  return items_.at(static_cast<std::size_t>(node.Index() - 1));
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

void Win32Tree::expansionChanged(const Node& node) {
  SendMessageW(window(), TVM_EXPAND, node.Expanded() ? TVE_EXPAND : TVE_COLLAPSE,
               reinterpret_cast<LPARAM>(itemOf(node)));
}

void Win32Tree::imageListChanged() {
  const ImageList* pictures = model().Images();
  UniqueImageList images;
  if (pictures) {
    const int size = GetSystemMetrics(SM_CXSMICON);
    images.reset(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, pictures->Count(), 1));
    for (int index = 1; index <= pictures->Count(); ++index) {
      ImageList_ReplaceIcon(images.get(), -1, IconOf((*pictures)(index), size).get());
    }
  }
  SendMessageW(window(), TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(images.get()));
  images_ = std::move(images);
}

void Win32Tree::setSelected(const Node& node) {
  chosen_ = node.Index();
  SendMessageW(window(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(itemOf(node)));
}

LRESULT Win32Tree::onNotify(NMHDR& header) {
  switch (header.code) {
    case NM_CUSTOMDRAW:
      return onDraw(reinterpret_cast<NMTVCUSTOMDRAW&>(header));
    case NM_CLICK:
      onClick();
      break;
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
LRESULT Win32Tree::onDraw(NMTVCUSTOMDRAW& step) const {
  if (step.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  const bool selected = (step.nmcd.uItemState & CDIS_SELECTED) != 0;
  if (selected && GetFocus() != window()) step.clrTextBk = ColorOf(SystemColor::ButtonShadow);
  return CDRF_DODEFAULT;
}

void Win32Tree::onClick() {
  const DWORD position = GetMessagePos();
  TVHITTESTINFO hit{};
  hit.pt = {static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))};
  ScreenToClient(window(), &hit.pt);
  SendMessageW(window(), TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  if (!hit.hItem || (hit.flags & TVHT_ONITEM) == 0) return;

  TVITEMW item{};
  item.mask = TVIF_PARAM;
  item.hItem = hit.hItem;
  SendMessageW(window(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  choose(item.lParam);
}

void Win32Tree::onSelectionChanged(const NMTREEVIEWW& change) {
  if (change.action == TVC_BYKEYBOARD) choose(change.itemNew.lParam);
}

void Win32Tree::choose(LPARAM index) {
  PostMessageW(GetParent(window()), kPostedToControl, reinterpret_cast<WPARAM>(window()), index);
}

void Win32Tree::onPosted(LPARAM index) {
  chosen_ = static_cast<int>(index);
  Tree& tree = model();
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
