// The program talks to the list by its model and, where the native control is asked, by messages to
// its window. Rows are counted from 1 in the model and from 0 in the messages and the widget.
#include "windows/qt/list.h"

namespace torvane {
namespace {

constexpr UINT kNowhere = 0x0001;
/// What a parent sends back to the control that a notification came from.
constexpr UINT kReflectedNotify = 0x2000 + WM_NOTIFY;

}  // namespace

QtList::QtList(const List& model, const QtShared& shared, QWidget& parent)
    : QtControl(
          model, shared,
          [this](UINT message, WPARAM wParam, LPARAM lParam) {
            return answer(message, wParam, lParam);
          },
          model, shared.icons, &parent),
      model_(model) {
  QtList::modelChanged();
  widget().rightClicked = [this](QPoint place) { notifyRightClick(place); };
}

void QtList::columnAdded(const Text&) {
  widget().rows().columnAdded();
}

void QtList::columnsCleared() {
  widget().rows().columnsCleared();
}

void QtList::itemAdded(const ListItem&) {
  widget().catchUpLater();
}

void QtList::itemChanged(const ListItem& item) {
  if (item.Index() <= widget().rows().rowCount()) widget().viewport()->update();
}

void QtList::itemsRemoved(const std::vector<int>& rows) {
  widget().removeRowsAt(rows);
}

void QtList::itemsCleared() {
  widget().clearRows();
}

bool QtList::selected(int row) const {
  return widget().rowSelected(row - 1);
}

void QtList::setSelected(int row, bool selected) {
  widget().selectRow(row - 1, selected);
}

int QtList::current() const {
  return widget().currentRow() + 1;
}

void QtList::setAllSelected(bool selected) {
  widget().selectAllRows(selected);
}

void QtList::modelChanged() {
  widget().setEmptyText(ToQString(model_.EmptyText()));
}

void QtList::setCurrent(int row) {
  widget().setCurrentRow(row - 1);
}

void QtList::ensureVisible(int row) {
  widget().scrollTo(widget().model()->index(row - 1, 0));
}

LRESULT QtList::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case LVM_SETIMAGELIST:
      return setImageList(wParam, lParam);
    case LVM_SETITEMW:
      return setItem(*reinterpret_cast<const LVITEMW*>(lParam));
    case LVM_HITTEST:
      return hitTest(*reinterpret_cast<LVHITTESTINFO*>(lParam));
    case LVM_SETCOLUMNWIDTH:
      if (static_cast<std::int16_t>(lParam) == LVSCW_AUTOSIZE_USEHEADER) {
        widget().fitColumn(static_cast<int>(wParam));
      } else {
        widget().setColumn(static_cast<int>(wParam), static_cast<int>(lParam));
      }
      return TRUE;
    case LVM_GETSELECTEDCOUNT:
      return widget().selectedCount();
    case LVM_SETEXTENDEDLISTVIEWSTYLE:
      return setExtendedStyle(wParam, lParam);
    default:
      return 0;
  }
}

LRESULT QtList::setImageList(WPARAM kind, LPARAM list) {
  if (kind != LVSIL_SMALL) return 0;
  const LPARAM before = std::exchange(imageList_, list);
  widget().rows().showImages(list != 0);
  widget().viewport()->update();
  return before;
}

LRESULT QtList::setItem(const LVITEMW& item) {
  if ((item.mask & LVIF_IMAGE) == 0 || item.iSubItem != 0) return FALSE;
  if (!widget().rows().setImage(item.iItem, item.iImage)) return FALSE;
  if (item.iItem < widget().rows().rowCount()) widget().viewport()->update();
  return TRUE;
}

LRESULT QtList::hitTest(LVHITTESTINFO& info) const {
  widget().catchUp();
  info.flags = kNowhere;
  info.iItem = -1;
  info.iSubItem = 0;
  const QPoint point(info.pt.x, info.pt.y);
  const auto cell = widget().cellAt(point);
  const bool fullRow = (extendedStyle_ & LVS_EX_FULLROWSELECT) != 0;
  if (!cell || (cell->column != 0 && !fullRow)) return info.iItem;
  info.flags = widget().onIcon(point) ? LVHT_ONITEMICON : LVHT_ONITEMLABEL;
  info.iItem = cell->row;
  return info.iItem;
}

LRESULT QtList::setExtendedStyle(WPARAM mask, LPARAM style) {
  const DWORD before = extendedStyle_;
  const DWORD bits = mask == 0 ? ~DWORD{0} : static_cast<DWORD>(mask);
  extendedStyle_ = (before & ~bits) | (static_cast<DWORD>(style) & bits);
  return static_cast<LRESULT>(before);
}

void QtList::notifyRightClick(QPoint place) {
  NMITEMACTIVATE click{};
  click.hdr = {handle(), 0, NM_RCLICK};
  click.ptAction = {place.x(), place.y()};
  shared().writeBack.run([click] {
    SendMessageW(click.hdr.hwndFrom, kReflectedNotify, 0, reinterpret_cast<LPARAM>(&click));
  });
}

}  // namespace torvane
