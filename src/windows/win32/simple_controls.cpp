#include "windows/win32/simple_controls.h"

#include "windows/controls/keys.h"
#include "windows/controls/toolkit.h"

#include <algorithm>
#include <utility>

namespace torvane {
namespace {

/// Of a text box, left and right, at 96 dots an inch.
constexpr int kTextMargin = 6;

int ButtonsOf(WPARAM state) {
  return ((state & MK_LBUTTON) != 0 ? kLeftButton : 0) |
         ((state & MK_RBUTTON) != 0 ? kRightButton : 0);
}

int KeysOf(WPARAM state) {
  return ((state & MK_SHIFT) != 0 ? kShiftKey : 0) | ((state & MK_CONTROL) != 0 ? kControlKey : 0);
}

}  // namespace

Win32Label::Win32Label(HWND form, Label& label)
    : Win32View(form, label, {.className = WC_STATICW, .style = SS_NOTIFY | SS_NOPREFIX}) {
  SetWindowSubclass(window(), Procedure, 0, reinterpret_cast<DWORD_PTR>(this));
  Win32Label::setMousePointer(label.Pointer());
  Win32Label::modelChanged();
}

Win32Label::~Win32Label() {
  RemoveWindowSubclass(window(), Procedure, 0);
}

void Win32Label::setMousePointer(MousePointer pointer) {
  setPointer(pointer);
  const LONG_PTR style = GetWindowLongPtrW(window(), GWL_STYLE) & ~LONG_PTR{WS_TABSTOP};
  const bool link = pointer == MousePointer::Hand;
  SetWindowLongPtrW(window(), GWL_STYLE, link ? style | WS_TABSTOP : style);
}

LRESULT CALLBACK Win32Label::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                       UINT_PTR /*id*/, DWORD_PTR self) {
  auto& label = *reinterpret_cast<Win32Label*>(self);
  const bool link = (GetWindowLongPtrW(window, GWL_STYLE) & WS_TABSTOP) != 0;
  if (!link) return DefSubclassProc(window, message, wParam, lParam);
  switch (message) {
    case WM_GETDLGCODE: {
      // Enter is the link's while it has the focus, not the default button's.
      const auto* key = reinterpret_cast<const MSG*>(lParam);
      return key && key->wParam == VK_RETURN ? DLGC_WANTMESSAGE : DLGC_STATIC;
    }
    case WM_KEYDOWN:
      if (wParam == VK_SPACE || wParam == VK_RETURN) label.press();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(window, nullptr, TRUE);
      return 0;
    case WM_PAINT: {
      const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
      if (GetFocus() == window) label.drawFocus();
      return result;
    }
    default:
      return DefSubclassProc(window, message, wParam, lParam);
  }
}

void Win32Label::press() {
  Deliver([&label = model()] { label.Click(); });
}

void Win32Label::drawFocus() {
  const HDC dc = GetDC(window());
  RECT place{};
  GetClientRect(window(), &place);
  {
    const Selection selected(dc, font());
    SIZE text{};
    const Text& caption = model().Caption();
    GetTextExtentPoint32W(dc, Wide(caption), static_cast<int>(caption.size()), &text);
    place.right = std::min(place.right, text.cx + 1);
    place.bottom = std::min(place.bottom, text.cy + 1);
  }
  DrawFocusRect(dc, &place);
  ReleaseDC(window(), dc);
}

void Win32Label::modelChanged() {
  const LONG_PTR style = GetWindowLongPtrW(window(), GWL_STYLE) & ~LONG_PTR{SS_TYPEMASK};
  SetWindowLongPtrW(window(), GWL_STYLE, style | (model().WordWrap ? SS_LEFT : SS_LEFTNOWORDWRAP));
  useFont({FontUse::Face::Message, model().FontScale, model().FontBold});
  SetWindowTextW(window(), Wide(model().Caption()));
  invalidate();
}

PixelSize Win32Label::naturalSize(int width) const {
  return textSize(model().Caption(), model().WordWrap ? width : 0);
}

void Win32Label::onCommand(UINT code) {
  if (code == STN_CLICKED || code == STN_DBLCLK) press();
}

HBRUSH Win32Label::onColors(HDC dc) {
  SetTextColor(dc, TextColorOf(model().ForeColor));
  SetBkColor(dc, ColorOf(SystemColor::ButtonFace));
  return BrushOf(SystemColor::ButtonFace);
}

Win32Line::Win32Line(HWND form, Line& line) : Win32View(form, line, {.className = AreaClass()}) {}

void Win32Line::onPaint(HDC dc, int width, int height) {
  const RECT all{0, 0, width, height};
  FillRect(dc, &all, BrushOf(model().BorderColor));
}

Win32Button::Win32Button(HWND form, Button& button)
    : Win32View(form, button,
                {.className = WC_BUTTONW,
                 .style = WS_TABSTOP | BS_PUSHBUTTON,
                 .font = {.face = FontUse::Face::Message}}) {
  Win32Button::modelChanged();
}

void Win32Button::modelChanged() {
  SendMessageW(window(), BM_SETSTYLE, model().Default ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
  SetWindowTextW(window(), Wide(model().Caption()));
}

PixelSize Win32Button::naturalSize(int /*width*/) const {
  const PixelSize text = textSize(model().Caption());
  return {text.width + 2 * text.height, text.height + text.height / 2};
}

void Win32Button::onCommand(UINT code) {
  if (code == BN_CLICKED) Deliver([&button = model()] { button.Click(); });
}

Win32TextBox::Win32TextBox(HWND form, TextBox& box)
    : Win32View(form, box,
                {.className = WC_EDITW,
                 .style = WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL,
                 .extendedStyle = WS_EX_CLIENTEDGE,
                 .font = {.face = FontUse::Face::FixedWidth}}) {
  setMargins();
  Win32TextBox::modelChanged();
}

void Win32TextBox::setMargins() {
  const int margin = scale().Design(kTextMargin);
  SendMessageW(window(), EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(margin, margin));
}

void Win32TextBox::onRescaled(double factor) {
  Win32Control::onRescaled(factor);
  setMargins();
}

PixelSize Win32TextBox::naturalSize(int /*width*/) const {
  const PixelSize text = textSize(model().Text());
  const int edges = 2 * SystemMetricAt(SM_CXEDGE, dpi()) + SystemMetricAt(SM_CXVSCROLL, dpi());
  return {text.width + 2 * scale().Design(kTextMargin) + edges, text.height};
}

void Win32TextBox::modelChanged() {
  SetWindowTextW(window(), Wide(model().Text()));
}

// A text that can't be changed would be grey; this one is there to be read.
HBRUSH Win32TextBox::onColors(HDC dc) {
  SetTextColor(dc, ColorOf(SystemColor::WindowText));
  SetBkColor(dc, ColorOf(SystemColor::WindowBackground));
  return BrushOf(SystemColor::WindowBackground);
}

Win32Frame::Win32Frame(HWND form, Frame& frame)
    : Win32View(form, frame, {.className = AreaClass()}) {}

// Hiding a window takes the mouse from it; the splitter's bar is hidden while it is dragged.
void Win32Frame::setVisible(bool visible) {
  if (!visible && GetCapture() == window()) {
    hiddenWhilePressed_ = std::exchange(pressed_, 0);
  }
  setVisibleNative(visible);
  if (visible && hiddenWhilePressed_ != 0) {
    pressed_ = std::exchange(hiddenWhilePressed_, 0);
    SetCapture(window());
  }
}

void Win32Frame::onPaint(HDC dc, int width, int height) {
  const RECT all{0, 0, width, height};
  FillRect(dc, &all, BrushOf(model().BackColor));
}

std::optional<LRESULT> Win32Frame::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      press(kLeftButton, wParam, lParam);
      return 0;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
      press(kRightButton, wParam, lParam);
      return 0;
    case WM_LBUTTONUP:
      release(kLeftButton, wParam, lParam);
      return 0;
    case WM_RBUTTONUP:
      release(kRightButton, wParam, lParam);
      return 0;
    case WM_MOUSEMOVE:
      fire(model().MouseMove, ButtonsOf(wParam), wParam, lParam);
      return 0;
    case WM_CAPTURECHANGED: {
      // Someone else takes the mouse: the buttons count as released where the mouse is. Who gives
      // it up on purpose is in the middle of that, so the event waits until he has finished.
      if (pressed_ == 0) return 0;
      POINT point{};
      GetCursorPos(&point);
      ScreenToClient(window(), &point);
      PostMessageW(GetParent(window()), kPostedToControl, reinterpret_cast<WPARAM>(window()),
                   MAKELPARAM(point.x, point.y));
      return 0;
    }
    default:
      return std::nullopt;
  }
}

void Win32Frame::onPosted(LPARAM position) {
  if (GetCapture() == window()) return;
  const int lost = std::exchange(pressed_, 0);
  if ((lost & kLeftButton) != 0) fire(model().MouseUp, kLeftButton, 0, position);
}

void Win32Frame::press(int button, WPARAM state, LPARAM position) {
  pressed_ |= button;
  SetCapture(window());
  fire(model().MouseDown, button, state, position);
}

void Win32Frame::release(int button, WPARAM state, LPARAM position) {
  pressed_ &= ~button;
  if (pressed_ == 0 && GetCapture() == window()) ReleaseCapture();
  fire(model().MouseUp, button, state, position);
}

void Win32Frame::fire(const MouseEvent& event, int button, WPARAM state, LPARAM position) {
  // Under a captured mouse the position may lie outside the window, hence negative.
  const auto twips = [own = scale()](WORD pixels) {
    return static_cast<float>(own.ToTwips(static_cast<short>(pixels)).count);
  };
  Deliver([&] { event(button, KeysOf(state), twips(LOWORD(position)), twips(HIWORD(position))); });
}

}  // namespace torvane
