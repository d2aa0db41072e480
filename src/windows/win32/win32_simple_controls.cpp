#include "windows/win32/win32_simple_controls.h"

#include "windows/controls/toolkit.h"

#include <utility>

namespace torvane {
namespace {

constexpr int kShiftKey = 1;
constexpr int kControlKey = 2;

int ButtonsOf(WPARAM state) {
  return ((state & MK_LBUTTON) != 0 ? kLeftButton : 0) |
         ((state & MK_RBUTTON) != 0 ? kRightButton : 0);
}

int KeysOf(WPARAM state) {
  return ((state & MK_SHIFT) != 0 ? kShiftKey : 0) | ((state & MK_CONTROL) != 0 ? kControlKey : 0);
}

float TwipsOf(WORD pixels) {
  // Under a captured mouse the position may lie outside the window, hence negative.
  return static_cast<float>(static_cast<short>(pixels)) *
         static_cast<float>(CurrentToolkit().TwipsPerPixel());
}

}  // namespace

Win32Label::Win32Label(HWND form, Label& label, Win32Fonts& fonts)
    : Win32View(form, label,
                {.className = WC_STATICW,
                 .style = SS_NOTIFY | SS_NOPREFIX |
                          (label.WordWrap ? DWORD{SS_LEFT} : DWORD{SS_LEFTNOWORDWRAP})}),
      fonts_(fonts) {
  Win32Label::update();
}

void Win32Label::update() {
  const HFONT font = fonts_.message(model().FontScale, model().FontBold);
  SendMessageW(window(), WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  SetWindowTextW(window(), Wide(model().Caption()));
  invalidate();
}

void Win32Label::onCommand(UINT code) {
  if (code != STN_CLICKED && code != STN_DBLCLK) return;
  Deliver([&label = model()] { label.Click(); });
}

HBRUSH Win32Label::onColors(HDC dc) {
  SetTextColor(dc, ColorOf(model().ForeColor));
  SetBkColor(dc, ColorOf(SystemColor::ButtonFace));
  return BrushOf(SystemColor::ButtonFace);
}

Win32Line::Win32Line(HWND form, Line& line) : Win32View(form, line, {.className = AreaClass()}) {}

void Win32Line::onPaint(HDC dc, int width, int height) {
  const RECT all{0, 0, width, height};
  FillRect(dc, &all, BrushOf(model().BorderColor));
}

Win32Button::Win32Button(HWND form, Button& button, Win32Fonts& fonts)
    : Win32View(
          form, button,
          {.className = WC_BUTTONW,
           .style = WS_TABSTOP | (button.Default ? DWORD{BS_DEFPUSHBUTTON} : DWORD{BS_PUSHBUTTON}),
           .font = fonts.message()}) {
  Win32Button::update();
}

void Win32Button::update() {
  SetWindowTextW(window(), Wide(model().Caption()));
}

void Win32Button::onCommand(UINT code) {
  if (code == BN_CLICKED) Deliver([&button = model()] { button.Click(); });
}

Win32TextBox::Win32TextBox(HWND form, TextBox& box, Win32Fonts& fonts)
    : Win32View(form, box,
                {.className = WC_EDITW,
                 .style = WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL,
                 .extendedStyle = WS_EX_CLIENTEDGE,
                 .font = fonts.fixedWidth()}) {
  const int margin = DesignPixels(6);
  SendMessageW(window(), EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(margin, margin));
  Win32TextBox::update();
}

void Win32TextBox::update() {
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
  Deliver(
      [&] { event(button, KeysOf(state), TwipsOf(LOWORD(position)), TwipsOf(HIWORD(position))); });
}

}  // namespace torvane
