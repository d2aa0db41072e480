#include "windows/win32/win32_control.h"

#include <system_error>

namespace torvane {
namespace {

constexpr int kHandCursor = 101;

}  // namespace

HCURSOR CursorOf(MousePointer pointer) {
  switch (pointer) {
    case MousePointer::Default:
      return nullptr;
    case MousePointer::SizeWestEast:
      return LoadCursorW(nullptr, IDC_SIZEWE);
    case MousePointer::Hourglass:
      return LoadCursorW(nullptr, IDC_WAIT);
    case MousePointer::Hand:
      return LoadCursorW(ThisModule(), MAKEINTRESOURCEW(kHandCursor));
  }
  return nullptr;
}

Win32Control::Win32Control(HWND form, const Control& control, const ChildWindow& child)
    : pointer_(control.Pointer()) {
  const PixelRect place = control.Bounds();
  const DWORD visible = control.Visible() ? WS_VISIBLE : 0;
  // Siblings are clipped because the splitter's bar lies over both panes. The window text is what
  // a screen reader calls a control that shows none.
  window_ =
      CreateWindowExW(child.extendedStyle, child.className, Wide(control.Name()),
                      child.style | visible | WS_CHILD | WS_CLIPSIBLINGS, place.left, place.top,
                      place.width, place.height, form, nullptr, ThisModule(), nullptr);
  if (!window_) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                            "A control can't be made");
  }
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  if (child.font) SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(child.font), FALSE);
}

Win32Control::~Win32Control() {
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
}

Win32Control* Win32Control::Of(HWND child) {
  return reinterpret_cast<Win32Control*>(GetWindowLongPtrW(child, GWLP_USERDATA));
}

HCURSOR Win32Control::cursor() const {
  return CursorOf(pointer_);
}

PixelRect Win32Control::nativeBounds() const {
  RECT rect{};
  GetWindowRect(window_, &rect);
  MapWindowPoints(nullptr, GetParent(window_), reinterpret_cast<POINT*>(&rect), 2);
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

void Win32Control::placeNative(const PixelRect& bounds) {
  MoveWindow(window_, bounds.left, bounds.top, bounds.width, bounds.height, TRUE);
}

void Win32Control::setVisibleNative(bool visible) {
  ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE);
}

void Win32Control::bringWindowToFront() {
  SetWindowPos(window_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void Win32Control::invalidate() {
  InvalidateRect(window_, nullptr, TRUE);
}

void Win32Control::paintNow() {
  RedrawWindow(window_, nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

}  // namespace torvane
