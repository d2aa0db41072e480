#include "windows/win32/form.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/resource_numbers.h"
#include "windows/controls/toolkit.h"
#include "windows/win32/toolkit.h"

namespace torvane {
namespace {

// A control's notification, sent back to the control, as its window procedure expects it.
constexpr UINT kReflected = 0x2000;
// The screen that the window is on has another scale now; newer than the Windows that is built for.
constexpr UINT kDpiChanged = 0x02E0;

UniqueIcon ApplicationIcon(int width, int height) {
  return UniqueIcon(
      static_cast<HICON>(LoadImageW(ThisModule(), MAKEINTRESOURCEW(resource::kApplicationIcon),
                                    IMAGE_ICON, width, height, LR_DEFAULTCOLOR)));
}

PixelRect PlaceOf(const RECT& rect) {
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

/// The ASCII code of a key that the system takes for a dialogue before it becomes a character.
int DialogueKey(WPARAM key) {
  switch (key) {
    case VK_TAB:
      return '\t';
    case VK_RETURN:
      return '\r';
    case VK_ESCAPE:
      return 0x1B;
    default:
      return 0;
  }
}

/// What windows may cover of each screen.
std::vector<PixelRect> Screens() {
  std::vector<PixelRect> screens;
  const auto add = [](HMONITOR monitor, HDC, RECT*, LPARAM list) -> BOOL {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (GetMonitorInfoW(monitor, &info)) {
      reinterpret_cast<std::vector<PixelRect>*>(list)->push_back(PlaceOf(info.rcWork));
    }
    return TRUE;
  };
  EnumDisplayMonitors(nullptr, nullptr, add, reinterpret_cast<LPARAM>(&screens));
  return screens;
}

/// `bounds` in the middle of `ground`.
PixelRect Centred(const PixelRect& bounds, const PixelRect& ground) {
  return {ground.left + (ground.width - bounds.width) / 2,
          ground.top + (ground.height - bounds.height) / 2, bounds.width, bounds.height};
}

}  // namespace

Win32Form::Win32Form(Win32Toolkit& toolkit, Form& form)
    : toolkit_(&toolkit), form_(form), bar_(Win32Menu::Bar(form.MenuBar())) {
  window_.reset(CreateWindowExW(extendedStyle(), ClassName(), Wide(form.Caption()), style(), 0, 0,
                                0, 0, nullptr, nullptr, ThisModule(), nullptr));
  if (!window_) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                            "A window can't be made");
  }
  SetDpi(window_.get(), WindowDpi(window_.get()));
  SetWindowLongPtrW(window_.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  if (!bar_.empty()) SetMenu(window_.get(), bar_.get());
  setIcons();
  centre();
  toolkit_->formMade(*this);
}

Win32Form::~Win32Form() {
  *gone_ = true;
  if (toolkit_) toolkit_->formGone(*this);
  SetWindowLongPtrW(window_.get(), GWLP_USERDATA, 0);
  ForgetDpi(window_.get());
  // The owner must be able to become active before this window stops being it; else the system
  // makes another program's window the active one.
  if (modalOwner_) EnableWindow(modalOwner_, TRUE);
  if (modalOwner_ && GetActiveWindow() == window_.get()) SetActiveWindow(modalOwner_);
  ShowWindow(window_.get(), SW_HIDE);
  SetMenu(window_.get(), nullptr);
  if (toolkit_) toolkit_->destroyLater(std::move(window_));
}

const wchar_t* Win32Form::ClassName() {
  static constexpr wchar_t kName[] = L"TorvaneForm";
  static const ATOM registered = [] {
    WNDCLASSEXW record{};
    record.cbSize = sizeof record;
    record.lpfnWndProc = Procedure;
    record.hInstance = ThisModule();
    record.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    record.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    record.lpszClassName = kName;
    return RegisterClassExW(&record);
  }();
  return registered ? kName : L"";
}

DWORD Win32Form::style() const {
  switch (form_.Border()) {
    case BorderStyle::Sizable:
      return WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    case BorderStyle::Dialog:
      return WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
    case BorderStyle::Splash:
      return WS_POPUP | WS_BORDER | WS_CLIPCHILDREN;
  }
  return 0;
}

DWORD Win32Form::extendedStyle() const {
  switch (form_.Border()) {
    case BorderStyle::Sizable:
      return WS_EX_APPWINDOW;
    case BorderStyle::Dialog:
      return WS_EX_DLGMODALFRAME;
    case BorderStyle::Splash:
      return WS_EX_TOOLWINDOW;
  }
  return 0;
}

void Win32Form::setIcons() {
  bigIcon_ = ApplicationIcon(systemMetric(SM_CXICON), systemMetric(SM_CYICON));
  smallIcon_ = ApplicationIcon(systemMetric(SM_CXSMICON), systemMetric(SM_CYSMICON));
  SendMessageW(window_.get(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(bigIcon_.get()));
  SendMessageW(window_.get(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(smallIcon_.get()));
}

PixelSize Win32Form::outerSize(const PixelSize& client) const {
  RECT frame{0, 0, client.width, client.height};
  AddFrame(frame, style(), extendedStyle(), bar_.empty() ? FALSE : TRUE, DpiOf(window_.get()));
  return {frame.right - frame.left, frame.bottom - frame.top};
}

void Win32Form::centre() {
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  const PixelSize size = outerSize({form_.DesignWidth, form_.DesignHeight});
  Win32Form::setOuterBounds(Centred({0, 0, size.width, size.height}, PlaceOf(work)));
}

void Win32Form::setClientSize(const PixelSize& size) {
  if (!IsWindowVisible(window_.get())) return centre();
  const PixelSize outer = outerSize(size);
  SetWindowPos(window_.get(), nullptr, 0, 0, outer.width, outer.height,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

Scale Win32Form::scale() const {
  return {static_cast<double>(DpiOf(window_.get()))};
}

int Win32Form::systemMetric(int index) const {
  return SystemMetricAt(index, DpiOf(window_.get()));
}

/// A modal window stands over its owner, but not beyond the screen.
void Win32Form::centreOverOwner() {
  RECT owner{};
  GetWindowRect(modalOwner_, &owner);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(modalOwner_, MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT& work = monitor.rcWork;
  PixelRect bounds = outerBounds();
  if (form_.Border() == BorderStyle::Sizable) {
    bounds.width = std::min<int>(bounds.width, work.right - work.left);
    bounds.height = std::min<int>(bounds.height, work.bottom - work.top);
  }
  bounds = Centred(bounds, PlaceOf(owner));
  bounds.left = std::max<int>(std::min<int>(bounds.left, work.right - bounds.width), work.left);
  bounds.top = std::max<int>(std::min<int>(bounds.top, work.bottom - bounds.height), work.top);
  setOuterBounds(bounds);
}

PixelRect Win32Form::outerBounds() const {
  RECT rect{};
  GetWindowRect(window_.get(), &rect);
  return PlaceOf(rect);
}

void Win32Form::setOuterBounds(const PixelRect& bounds) {
  SetWindowPos(window_.get(), nullptr, bounds.left, bounds.top, bounds.width, bounds.height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

int Win32Form::clientWidth() const {
  RECT client{};
  GetClientRect(window_.get(), &client);
  return client.right;
}

int Win32Form::clientHeight() const {
  RECT client{};
  GetClientRect(window_.get(), &client);
  return client.bottom;
}

WindowState Win32Form::windowState() const {
  if (IsIconic(window_.get())) return WindowState::Minimized;
  if (IsZoomed(window_.get())) return WindowState::Maximized;
  return IsWindowVisible(window_.get()) ? WindowState::Normal : stateToShow_;
}

void Win32Form::setWindowState(WindowState state) {
  stateToShow_ = state;
  if (IsWindowVisible(window_.get())) show();
}

void Win32Form::setCaption(const Text& caption) {
  SetWindowTextW(window_.get(), Wide(caption));
}

void Win32Form::setMousePointer(MousePointer pointer) {
  pointer_ = pointer;
  // The mouse may rest for as long as a handler runs, so its shape changes now.
  POINT point{};
  GetCursorPos(&point);
  const HWND under = WindowFromPoint(point);
  if (under != window_.get() && !IsChild(window_.get(), under)) return;
  SendMessageW(under, WM_SETCURSOR, reinterpret_cast<WPARAM>(under),
               MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
}

// What was saved may lie on a screen that is gone.
void Win32Form::bringIntoSight() {
  if (form_.Border() != BorderStyle::Sizable || IsWindowVisible(window_.get())) return;
  const int caption = systemMetric(SM_CYCAPTION) + systemMetric(SM_CYFRAME);
  const PixelRect wanted = outerBounds();
  const PixelRect seen = InSight(wanted, caption, Screens());
  if (seen != wanted) setOuterBounds(seen);
}

void Win32Form::show() {
  bringIntoSight();
  switch (std::exchange(stateToShow_, WindowState::Normal)) {
    case WindowState::Normal:
      ShowWindow(window_.get(), SW_SHOWNORMAL);
      break;
    case WindowState::Minimized:
      ShowWindow(window_.get(), SW_SHOWMINIMIZED);
      break;
    case WindowState::Maximized:
      ShowWindow(window_.get(), SW_SHOWMAXIMIZED);
      break;
  }
  SetForegroundWindow(window_.get());
}

void Win32Form::showModal(Form& owner) {
  const std::shared_ptr<bool> gone = gone_;
  modalOwner_ = owner.hWnd();
  // It doesn't go away alone and leave a disabled window behind.
  const LONG_PTR style = GetWindowLongPtrW(window_.get(), GWL_STYLE);
  SetWindowLongPtrW(window_.get(), GWL_STYLE, style & ~LONG_PTR{WS_MINIMIZEBOX});
  SetWindowLongPtrW(window_.get(), GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(modalOwner_));
  EnableWindow(modalOwner_, FALSE);
  centreOverOwner();
  show();
  toolkit_->runUntil(*gone);
}

void Win32Form::hide() {
  ShowWindow(window_.get(), SW_HIDE);
}

void Win32Form::paintNow() {
  RedrawWindow(window_.get(), nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

bool Win32Form::previewKey(MSG& message) {
  const bool character = message.message == WM_CHAR;
  const bool pressed = message.message == WM_KEYDOWN;
  if (!character && !pressed) return false;

  const std::shared_ptr<bool> gone = gone_;
  if (form_.KeyPreview && pressed && keepsKey(message.wParam)) return true;
  if (*gone) return true;
  // The dialogue keys are seen as they go down, so not again as characters.
  const int code = character ? static_cast<int>(message.wParam) : DialogueKey(message.wParam);
  const bool seenBefore = character && (code == '\t' || code == '\r' || code == kKeyEscape);
  if (form_.KeyPreview && code != 0 && !seenBefore && keepsCharacter(message, code)) return true;
  if (character) {
    auto* control = controlOf(message.hwnd);
    return control && control->onCharacter(message.wParam, message.lParam);
  }
  return message.wParam == VK_ESCAPE && cancel();
}

bool Win32Form::keepsKey(WPARAM key) {
  const auto held = [](int virtualKey, int bit) { return GetKeyState(virtualKey) < 0 ? bit : 0; };
  const int bits =
      held(VK_SHIFT, kShiftKey) | held(VK_CONTROL, kControlKey) | held(VK_MENU, kAltKey);
  int code = static_cast<int>(key);
  Deliver([&form = form_, &code, bits] { form.KeyDown(code, bits); });
  return code == 0;
}

bool Win32Form::keepsCharacter(MSG& message, int code) {
  const std::shared_ptr<bool> gone = gone_;
  int key = code;
  Deliver([&form = form_, &key] { form.KeyPress(key); });
  if (*gone || key == 0) return true;
  if (message.message == WM_CHAR) message.wParam = static_cast<WPARAM>(key);
  return false;
}

LRESULT Win32Form::menuOfLetter(char16_t letter, HMENU menu) const {
  const int place = menu == bar_.get() ? form_.MenuBar().PlaceByLetter(letter) : -1;
  return place < 0 ? MAKELRESULT(0, MNC_IGNORE) : MAKELRESULT(place, MNC_EXECUTE);
}

LRESULT CALLBACK Win32Form::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (auto* form = reinterpret_cast<Win32Form*>(GetWindowLongPtrW(window, GWLP_USERDATA))) {
    if (const auto result = form->onMessage(message, wParam, lParam)) return *result;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

std::optional<LRESULT> Win32Form::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      onResized();
      return 0;
    case kDpiChanged:
      onDpiChanged(LOWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
      return 0;
    case WM_CLOSE:
      // A window under a modal one stays, whoever asks.
      if (IsWindowEnabled(window_.get())) close();
      return 0;
    case WM_ENDSESSION:
      if (wParam) close();
      return 0;
    case WM_ACTIVATE:
      onActivated(LOWORD(wParam) != WA_INACTIVE);
      return std::nullopt;
    case WM_SETFOCUS:
      focusFirst();
      return 0;
    case WM_SETCURSOR:
      if (onSetCursor(reinterpret_cast<HWND>(wParam), LOWORD(lParam))) return TRUE;
      return std::nullopt;
    case WM_INITMENUPOPUP:
      if (HIWORD(lParam) == 0) bar_.refill(reinterpret_cast<HMENU>(wParam));
      return std::nullopt;
    case WM_MENUCHAR:
      return menuOfLetter(static_cast<char16_t>(LOWORD(wParam)), reinterpret_cast<HMENU>(lParam));
    case DM_GETDEFID:
      return defaultButton();
    default:
      return onControlMessage(message, wParam, lParam);
  }
}

std::optional<LRESULT> Win32Form::onControlMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      onCommand(wParam, lParam);
      return 0;
    case WM_NOTIFY:
      return onNotify(wParam, lParam);
    case WM_NOTIFYFORMAT:
      return NFR_UNICODE;
    case WM_ERASEBKGND: {
      // A themed control has the form paint what shows through it. Wine's tree asks for that under
      // its marks, and would be filled with it as a whole.
      const auto* asking = controlOf(WindowFromDC(reinterpret_cast<HDC>(wParam)));
      return asking && asking->hasOwnGround() ? std::optional<LRESULT>(1) : std::nullopt;
    }
    case WM_CONTEXTMENU: {
      constexpr LPARAM kByKey = -1;
      auto* control = controlOf(reinterpret_cast<HWND>(wParam));
      if (!control || lParam != kByKey) return std::nullopt;
      control->onMenuKey();
      return 0;
    }
    case kPostedToControl:
      if (auto* control = controlOf(reinterpret_cast<HWND>(wParam))) control->onPosted(lParam);
      return 0;
    case WM_CTLCOLORSTATIC: {
      auto* control = controlOf(reinterpret_cast<HWND>(lParam));
      const HBRUSH brush = control ? control->onColors(reinterpret_cast<HDC>(wParam)) : nullptr;
      if (!brush) return std::nullopt;
      return reinterpret_cast<LRESULT>(brush);
    }
    case WM_SYSCOLORCHANGE:
      for (Control* control : form_.Controls()) {
        SendMessageW(control->hWnd(), message, wParam, lParam);
      }
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

void Win32Form::onResized() {
  if (form_.view() != this) return;  // still being made
  for (Control* control : form_.Controls()) {
    if (auto* child = controlOf(control->hWnd())) child->onFormResized();
  }
  Deliver([&form = form_] { form.Resize(); });
}

// The window's frame and its menu bar follow by themselves. The place that the system suggests
// keeps a window that is being dragged under the mouse.
void Win32Form::onDpiChanged(int dpi, const RECT& suggested) {
  const double factor = dpi / scale().dotsPerInch;
  SetDpi(window_.get(), dpi);
  setIcons();
  for (Control* control : form_.Controls()) {
    if (auto* child = controlOf(control->hWnd())) child->onRescaled(factor);
  }
  setOuterBounds(PlaceOf(suggested));
  const std::shared_ptr<bool> gone = gone_;
  Deliver([&form = form_] { form.Rescale(); });
  if (!*gone) paintNow();
}

void Win32Form::onCommand(WPARAM wParam, LPARAM lParam) {
  if (auto* control = controlOf(reinterpret_cast<HWND>(lParam))) {
    control->onCommand(HIWORD(wParam));
  } else if (LOWORD(wParam) == IDCANCEL) {
    cancel();
  } else if (MenuItem* item = bar_.commandOf(LOWORD(wParam))) {
    Deliver([item] { item->Click(); });
  }
}

std::optional<LRESULT> Win32Form::onNotify(WPARAM wParam, LPARAM lParam) {
  auto& header = *reinterpret_cast<NMHDR*>(lParam);
  const HWND sender = header.hwndFrom;
  if (!controlOf(sender)) return std::nullopt;
  // A list asks for texts by the hundred thousand; only its view can answer.
  if (header.code == LVN_GETDISPINFOW) return Win32Control::Of(sender)->onNotify(header);
  const LRESULT answer = SendMessageW(sender, kReflected + WM_NOTIFY, wParam, lParam);
  if (answer != 0) return answer;
  // The handler may have closed the form, and this view with it.
  auto* control = IsWindow(sender) ? Win32Control::Of(sender) : nullptr;
  return control ? control->onNotify(header) : 0;
}

bool Win32Form::onSetCursor(HWND under, WORD part) {
  if (part != HTCLIENT) return false;
  HCURSOR cursor = CursorOf(pointer_);
  if (!cursor) {
    const Win32Control* control = controlOf(under);
    cursor = control ? control->cursor() : nullptr;
  }
  if (cursor) SetCursor(cursor);
  return cursor != nullptr;
}

void Win32Form::onActivated(bool active) {
  if (active) return Deliver([&form = form_] { form.Activate(); });
  const HWND focus = GetFocus();
  if (IsChild(window_.get(), focus)) lastFocus_ = focus;
}

void Win32Form::focusFirst() {
  const bool known = IsChild(window_.get(), lastFocus_) && IsWindowVisible(lastFocus_);
  // Enter does what the default button does until the user goes elsewhere.
  const HWND button = GetDlgItem(window_.get(), LOWORD(defaultButton()));
  const HWND first = button ? button : GetNextDlgTabItem(window_.get(), nullptr, FALSE);
  const HWND next = known ? lastFocus_ : first;
  if (next) SetFocus(next);
}

LRESULT Win32Form::defaultButton() const {
  for (Control* control : form_.Controls()) {
    const auto* button = dynamic_cast<const Button*>(control);
    if (button && button->Default && button->Visible()) {
      return MAKELRESULT(GetDlgCtrlID(button->hWnd()), DC_HASDEFID);
    }
  }
  return 0;
}

void Win32Form::close() {
  Deliver([&form = form_] { form.Unload(); });
}

/// What Escape does: it presses the button for it, and closes a modal window that has none.
bool Win32Form::cancel() {
  for (Control* control : form_.Controls()) {
    const auto* button = dynamic_cast<const Button*>(control);
    if (!button || !button->Cancel || !button->Visible()) continue;
    Deliver([button] { button->Click(); });
    return true;
  }
  if (!modalOwner_) return false;
  close();
  return true;
}

Win32Control* Win32Form::controlOf(HWND child) const {
  return child && GetAncestor(child, GA_PARENT) == window_.get() ? Win32Control::Of(child)
                                                                 : nullptr;
}

}  // namespace torvane
