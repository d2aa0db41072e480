// The control holds the rows, their images and their selection; the texts it asks of the model when
// it needs them, so that nothing is kept twice.
//
// The program puts a window procedure of the A kind before the control's. From then on Windows
// calls the window an ANSI one and converts what is sent to it by WM_SETTEXT and its like, but
// neither the control's own messages nor its notifications: those stay as the control was told at
// its creation.
#include "windows/win32/win32_list.h"

#include "windows/controls/toolkit.h"

#include <uxtheme.h>

#include <utility>

namespace torvane {
namespace {

constexpr int kNewColumnWidth = 96;

}  // namespace

Win32List::Win32List(HWND form, List& list, Win32Fonts& fonts)
    : Win32View(form, list,
                {.className = WC_LISTVIEWW,
                 .style = WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER |
                          LVS_SHAREIMAGELISTS,
                 .extendedStyle = WS_EX_CLIENTEDGE,
                 .font = fonts.message()}),
      own_(reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window(), GWLP_WNDPROC))) {
  SendMessageW(window(), LVM_SETUNICODEFORMAT, TRUE, 0);
  SetWindowTheme(window(), L"Explorer", nullptr);
  SendMessageW(window(), LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_LABELTIP, LVS_EX_LABELTIP);
  for (int index = 1; index <= list.ColumnHeaders().Count(); ++index) {
    Win32List::columnAdded(list.ColumnHeaders()(index));
  }
  for (int index = 1; index <= list.ListItems().Count(); ++index) {
    Win32List::itemAdded(list.ListItems()(index));
  }
}

// Rows come and go one by one and in thousands. Nothing is painted until the queue is reached,
// which is when the command that does it has ended or lets messages run.
void Win32List::stopPainting() {
  if (std::exchange(painting_, false)) {
    SendMessageW(window(), WM_SETREDRAW, FALSE, 0);
    PostMessageW(GetParent(window()), kPostedToControl, reinterpret_cast<WPARAM>(window()), 0);
  }
}

void Win32List::resumePainting() {
  if (!std::exchange(painting_, true)) {
    SendMessageW(window(), WM_SETREDRAW, TRUE, 0);
    RedrawWindow(window(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
  }
}

void Win32List::refresh() {
  resumePainting();
  paintNow();
}

void Win32List::columnAdded(const Text& heading) {
  if (columns_ == 0) setDoubleBuffer(LVS_EX_DOUBLEBUFFER);
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  column.cx = DesignPixels(kNewColumnWidth);
  column.pszText = WideForRecord(heading);
  column.iSubItem = columns_;
  SendMessageW(window(), LVM_INSERTCOLUMNW, static_cast<WPARAM>(columns_),
               reinterpret_cast<LPARAM>(&column));
  const int rows = static_cast<int>(SendMessageW(window(), LVM_GETITEMCOUNT, 0, 0));
  for (int index = 0; index < rows; ++index) askForText(index, columns_);
  ++columns_;
}

void Win32List::columnsCleared() {
  while (columns_ > 0) SendMessageW(window(), LVM_DELETECOLUMN, static_cast<WPARAM>(--columns_), 0);
  setDoubleBuffer(0);
}

// Wine shows a double buffered header without columns in black.
void Win32List::setDoubleBuffer(DWORD style) {
  SendMessageW(window(), LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_DOUBLEBUFFER, style);
}

void Win32List::itemAdded(const ListItem& item) {
  stopPainting();
  const int index = item.Index() - 1;
  LVITEMW record{};
  record.mask = LVIF_TEXT;
  record.iItem = index;
  record.pszText = LPSTR_TEXTCALLBACKW;
  SendMessageW(window(), LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&record));
  for (int column = 1; column < columns_; ++column) askForText(index, column);
}

void Win32List::askForText(int index, int column) {
  LVITEMW record{};
  record.iSubItem = column;
  record.pszText = LPSTR_TEXTCALLBACKW;
  SendMessageW(window(), LVM_SETITEMTEXTW, static_cast<WPARAM>(index),
               reinterpret_cast<LPARAM>(&record));
}

void Win32List::itemChanged(const ListItem& item) {
  if (!painting_) return;  // everything is painted when painting goes on
  const int index = item.Index() - 1;
  SendMessageW(window(), LVM_REDRAWITEMS, static_cast<WPARAM>(index), index);
}

void Win32List::itemsRemoved(const std::vector<int>& rows) {
  stopPainting();
  for (const int row : rows) {
    SendMessageW(window(), LVM_DELETEITEM, static_cast<WPARAM>(row - 1), 0);
  }
}

void Win32List::itemsCleared() {
  SendMessageW(window(), LVM_DELETEALLITEMS, 0, 0);
}

bool Win32List::selected(int row) const {
  return SendMessageW(window(), LVM_GETITEMSTATE, static_cast<WPARAM>(row - 1), LVIS_SELECTED) != 0;
}

void Win32List::setSelected(int row, bool selected) {
  LVITEMW record{};
  record.stateMask = LVIS_SELECTED;
  record.state = selected ? LVIS_SELECTED : 0;
  SendMessageW(window(), LVM_SETITEMSTATE, static_cast<WPARAM>(row - 1),
               reinterpret_cast<LPARAM>(&record));
}

int Win32List::current() const {
  return static_cast<int>(
             SendMessageW(window(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED)) +
         1;
}

// The menu stands where the mouse is, so the mouse goes to the row with the focus; then the form is
// told of a right-click as the control would tell it.
void Win32List::onMenuKey() {
  RECT place{};
  GetClientRect(window(), &place);
  if (const auto row = static_cast<WPARAM>(current()); row > 0) {
    SendMessageW(window(), LVM_ENSUREVISIBLE, row - 1, FALSE);
    place.left = LVIR_SELECTBOUNDS;
    SendMessageW(window(), LVM_GETITEMRECT, row - 1, reinterpret_cast<LPARAM>(&place));
    place.right = place.left + (place.bottom - place.top);
  }
  POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
  ClientToScreen(window(), &middle);
  SetCursorPos(middle.x, middle.y);
  const int id = GetDlgCtrlID(window());
  NMHDR header{window(), static_cast<UINT_PTR>(id), static_cast<UINT>(NM_RCLICK)};
  SendMessageW(GetParent(window()), WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
}

// The way through the ANSI procedure would make a question mark of most characters.
bool Win32List::onCharacter(WPARAM character, LPARAM keys) {
  constexpr WPARAM kAsciiEnd = 0x80;
  if (character < kAsciiEnd) return false;
  CallWindowProcW(own_, window(), WM_CHAR, character, keys);
  return true;
}

LRESULT Win32List::onNotify(NMHDR& header) {
  if (header.code != LVN_GETDISPINFOW) return 0;
  LVITEMW& wanted = reinterpret_cast<NMLVDISPINFOW&>(header).item;
  if ((wanted.mask & LVIF_TEXT) == 0) return 0;

  const ListItemCollection& items = model().ListItems();
  shown_ = wanted.iItem < items.Count() ? items(wanted.iItem + 1).Shown(wanted.iSubItem) : Text();
  wanted.pszText = WideForRecord(shown_);
  return 0;
}

}  // namespace torvane
