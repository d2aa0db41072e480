// The control holds the rows, their images and their selection; the texts it asks of the model when
// it needs them, so that nothing is kept twice.
//
// The program puts a window procedure of the A kind before the control's. From then on Windows
// calls the window an ANSI one and converts what is sent to it by WM_SETTEXT and its like, but
// neither the control's own messages nor its notifications: those stay as the control was told at
// its creation.
#include "windows/win32/list.h"

#include "windows/controls/toolkit.h"
#include "windows/win32/theme.h"

#include <oleacc.h>

#include <cmath>
#include <iterator>
#include <utility>

namespace torvane {
namespace {

constexpr int kNewColumnWidth = 96;
/// LVM_RESETEMPTYTEXT, which the headers lack: the control asks for the text anew.
constexpr UINT kResetEmptyText = LVM_FIRST + 84;

}  // namespace

Win32List::Win32List(HWND form, List& list)
    : Win32View(form, list,
                {.className = WC_LISTVIEWW,
                 .style = WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER |
                          LVS_SHAREIMAGELISTS,
                 .extendedStyle = WS_EX_CLIENTEDGE,
                 .font = {.face = FontUse::Face::Message}}),
      own_(reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window(), GWLP_WNDPROC))) {
  SendMessageW(window(), LVM_SETUNICODEFORMAT, TRUE, 0);
  UseExplorerTheme(window());
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
    matchImages();
    SendMessageW(window(), WM_SETREDRAW, TRUE, 0);
    RedrawWindow(window(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
  }
}

// The program has given the control the shell's small images, and its procedure keeps them there.
// On a screen of another scale than theirs the same images stand in, in the size for it; rows that
// have come since may have new ones.
void Win32List::matchImages() {
  const LRESULT shown = SendMessageW(window(), LVM_GETIMAGELIST, LVSIL_SMALL, 0);
  if (shown == 0) return;
  const auto wanted = reinterpret_cast<LPARAM>(images_.at(SystemMetricAt(SM_CXSMICON, dpi())));
  if (wanted != shown) CallWindowProcW(own_, window(), LVM_SETIMAGELIST, LVSIL_SMALL, wanted);
}

void Win32List::paintNow() {
  resumePainting();
  paintNativeNow();
}

void Win32List::columnAdded(const Text& heading) {
  if (columns_ == 0) setDoubleBuffer(LVS_EX_DOUBLEBUFFER);
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  column.cx = scale().Design(kNewColumnWidth);
  column.pszText = WideForRecord(heading);
  column.iSubItem = columns_;
  SendMessageW(window(), LVM_INSERTCOLUMNW, static_cast<WPARAM>(columns_),
               reinterpret_cast<LPARAM>(&column));
  const int rows = static_cast<int>(SendMessageW(window(), LVM_GETITEMCOUNT, 0, 0));
  for (int index = 0; index < rows; ++index) askForText(index, columns_);
  ++columns_;
}

void Win32List::onRescaled(double factor) {
  Win32Control::onRescaled(factor);
  for (int column = 0; column < columns_; ++column) {
    const auto place = static_cast<WPARAM>(column);
    const LRESULT width = SendMessageW(window(), LVM_GETCOLUMNWIDTH, place, 0);
    SendMessageW(window(), LVM_SETCOLUMNWIDTH, place,
                 std::lround(static_cast<double>(width) * factor));
  }
  matchImages();
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

// Row 0 stands for all of them.
void Win32List::setState(int row, UINT bits, UINT state) {
  LVITEMW record{};
  record.stateMask = bits;
  record.state = state;
  SendMessageW(window(), LVM_SETITEMSTATE, static_cast<WPARAM>(row - 1),
               reinterpret_cast<LPARAM>(&record));
}

void Win32List::setSelected(int row, bool selected) {
  setState(row, LVIS_SELECTED, selected ? LVIS_SELECTED : 0);
}

void Win32List::setAllSelected(bool selected) {
  setState(0, LVIS_SELECTED, selected ? LVIS_SELECTED : 0);
}

void Win32List::setCurrent(int row) {
  setState(row, LVIS_FOCUSED, LVIS_FOCUSED);
  SendMessageW(window(), LVM_SETSELECTIONMARK, 0, row - 1);
  SendMessageW(window(), LVM_ENSUREVISIBLE, static_cast<WPARAM>(row - 1), FALSE);
}

int Win32List::current() const {
  return static_cast<int>(
             SendMessageW(window(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED)) +
         1;
}

void Win32List::ensureVisible(int row) {
  SendMessageW(window(), LVM_ENSUREVISIBLE, static_cast<WPARAM>(row - 1), FALSE);
}

// The form is told of a right-click on the row with the focus, as the control would tell it.
void Win32List::onMenuKey() {
  RECT place{};
  GetClientRect(window(), &place);
  if (const auto row = static_cast<WPARAM>(current()); row > 0) {
    SendMessageW(window(), LVM_ENSUREVISIBLE, row - 1, FALSE);
    place.left = LVIR_SELECTBOUNDS;
    SendMessageW(window(), LVM_GETITEMRECT, row - 1, reinterpret_cast<LPARAM>(&place));
    place.right = place.left + (place.bottom - place.top);
  }
  NMITEMACTIVATE click{};
  const auto id = static_cast<UINT_PTR>(GetDlgCtrlID(window()));
  click.hdr = {window(), id, static_cast<UINT>(NM_RCLICK)};
  click.ptAction = {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
  SendMessageW(GetParent(window()), WM_NOTIFY, id, reinterpret_cast<LPARAM>(&click));
}

// The way through the ANSI procedure would make a question mark of most characters.
bool Win32List::onCharacter(WPARAM character, LPARAM keys) {
  constexpr WPARAM kAsciiEnd = 0x80;
  if (character < kAsciiEnd) return false;
  CallWindowProcW(own_, window(), WM_CHAR, character, keys);
  return true;
}

void Win32List::modelChanged() {
  Describe(window(), CHILDID_SELF, model().EmptyText());
  SendMessageW(window(), kResetEmptyText, 0, 0);
  invalidate();
}

// The control of today's Windows asks for the text that stands in an empty list.
LRESULT Win32List::onEmpty(NMLVEMPTYMARKUP& wanted) {
  saysEmpty_ = true;
  const Text& text = model().EmptyText();
  if (text.empty()) return FALSE;
  wanted.dwFlags = EMF_CENTERED;
  lstrcpynW(wanted.szMarkup, Wide(text), static_cast<int>(std::size(wanted.szMarkup)));
  return TRUE;
}

// Older ones and Wine's don't ask, and get it painted.
LRESULT Win32List::onDraw(const NMLVCUSTOMDRAW& step) {
  if (saysEmpty_ || model().ListItems().Count() > 0 || model().EmptyText().empty()) {
    return CDRF_DODEFAULT;
  }
  if (step.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYPOSTPAINT;
  if (step.nmcd.dwDrawStage != CDDS_POSTPAINT) return CDRF_DODEFAULT;
  RECT room{};
  GetClientRect(window(), &room);
  const HWND header = reinterpret_cast<HWND>(SendMessageW(window(), LVM_GETHEADER, 0, 0));
  RECT heading{};
  if (header && GetClientRect(header, &heading)) room.top += heading.bottom;
  const HDC dc = step.nmcd.hdc;
  const Selection font(dc, reinterpret_cast<HFONT>(SendMessageW(window(), WM_GETFONT, 0, 0)));
  RECT text = room;
  const UINT format = DT_CENTER | DT_WORDBREAK | DT_NOPREFIX;
  const int height = DrawTextW(dc, Wide(model().EmptyText()), -1, &text, format | DT_CALCRECT);
  room.top += (room.bottom - room.top - height) / 2;
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, ColorOf(SystemColor::WindowText));
  DrawTextW(dc, Wide(model().EmptyText()), -1, &room, format);
  return CDRF_DODEFAULT;
}

LRESULT Win32List::onNotify(NMHDR& header) {
  if (header.code == NM_CUSTOMDRAW) return onDraw(reinterpret_cast<NMLVCUSTOMDRAW&>(header));
  if (header.code == LVN_GETEMPTYMARKUP) return onEmpty(reinterpret_cast<NMLVEMPTYMARKUP&>(header));
  if (header.code != LVN_GETDISPINFOW) return 0;
  LVITEMW& wanted = reinterpret_cast<NMLVDISPINFOW&>(header).item;
  if ((wanted.mask & LVIF_TEXT) == 0) return 0;

  const ListItemCollection& items = model().ListItems();
  lastShown_ = (lastShown_ + 1) % shown_.size();
  Text& shown = shown_[lastShown_];
  shown = wanted.iItem < items.Count() ? items(wanted.iItem + 1).Shown(wanted.iSubItem) : Text();
  wanted.pszText = WideForRecord(shown);
  return 0;
}

}  // namespace torvane
