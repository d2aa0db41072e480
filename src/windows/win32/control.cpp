#include "windows/win32/control.h"

#include <oleacc.h>

#include <memory>
#include <system_error>

#include "platform/resource_numbers.h"

namespace torvane {
namespace {

constexpr wchar_t kDpiProperty[] = L"Dots an inch";

}  // namespace

Win32Fonts& Fonts() {
  static Win32Fonts fonts;
  return fonts;
}

int DpiOf(HWND window) {
  const HWND form = GetAncestor(window, GA_ROOT);
  const auto dpi = static_cast<int>(reinterpret_cast<LONG_PTR>(GetPropW(form, kDpiProperty)));
  return dpi > 0 ? dpi : WindowDpi(form);
}

void SetDpi(HWND form, int dpi) {
  SetPropW(form, kDpiProperty, reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(dpi)));
}

HCURSOR CursorOf(MousePointer pointer) {
  switch (pointer) {
    case MousePointer::Default:
      return nullptr;
    case MousePointer::SizeWestEast:
      return LoadCursorW(nullptr, IDC_SIZEWE);
    case MousePointer::Hourglass:
      return LoadCursorW(nullptr, IDC_WAIT);
    case MousePointer::Hand:
      return LoadCursorW(ThisModule(), MAKEINTRESOURCEW(resource::kHandCursor));
  }
  return nullptr;
}

void Describe(HWND window, DWORD child, const Text& description) {
  IAccPropServices* found = nullptr;
  CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                   reinterpret_cast<void**>(&found));
  const Com<IAccPropServices> service(found);
  if (!service) return;
  service->SetHwndPropStr(window, static_cast<DWORD>(OBJID_CLIENT), child, PROPID_ACC_DESCRIPTION,
                          Wide(description));
}

void ForgetDpi(HWND form) {
  RemovePropW(form, kDpiProperty);
}

Win32Control::Win32Control(HWND form, const Control& control, const ChildWindow& child)
    : pointer_(control.Pointer()), font_(child.font) {
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
  useFont(font_);
}

Win32Control::~Win32Control() {
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
}

void Win32Control::useFont(const FontUse& use) {
  font_ = use;
  if (const HFONT made = font()) {
    SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(made), FALSE);
  }
}

void Win32Control::onRescaled(double /*factor*/) {
  useFont(font_);
  invalidate();
}

PixelSize Win32Control::textSize(const Text& text, int width) const {
  const ScreenDc dc;
  const Selection selected(dc.get(), font());
  RECT room{0, 0, width, 0};
  DrawTextW(dc.get(), Wide(text), -1, &room,
            DT_CALCRECT | DT_NOPREFIX | DT_EXPANDTABS | (width > 0 ? DT_WORDBREAK : 0U));
  return {room.right, room.bottom};
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

void Win32Control::paintNativeNow() {
  RedrawWindow(window_, nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

}  // namespace torvane
