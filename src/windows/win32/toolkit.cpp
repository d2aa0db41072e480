#include "windows/win32/toolkit.h"

#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <map>

#include "windows/win32/folder_dialog.h"
#include "windows/win32/list.h"
#include "windows/win32/picture_box.h"
#include "windows/win32/simple_controls.h"
#include "windows/win32/status_bar.h"
#include "windows/win32/tree.h"

namespace torvane {
namespace {

constexpr int kFirstControlId = 100;

/// Makes the view of each kind of control.
class ViewMaker : public ControlVisitor {
 public:
  explicit ViewMaker(HWND form) : form_(form) {}

  void visit(Tree& tree) override { make<Win32Tree>(tree); }
  void visit(List& list) override { make<Win32List>(list); }
  void visit(StatusBar& bar) override { make<Win32StatusBar>(bar); }
  void visit(Frame& frame) override { make<Win32Frame>(frame); }
  void visit(PictureBox& box) override { make<Win32PictureBox>(box); }
  void visit(Label& label) override { make<Win32Label>(label); }
  void visit(Line& line) override { make<Win32Line>(line); }
  void visit(Button& button) override { make<Win32Button>(button); }
  void visit(TextBox& box) override { make<Win32TextBox>(box); }

 private:
  template <class View, class Model>
  void make(Model& model) {
    auto view = std::make_unique<View>(form_, model);
    SetWindowLongPtrW(view->handle(), GWLP_ID, id_++);
    model.attachView(std::move(view));
  }

  HWND form_;
  int id_ = kFirstControlId;
};

/// What waits for idle moments, by its timer.
std::map<UINT_PTR, std::function<void()>>& IdleWork() {
  static std::map<UINT_PTR, std::function<void()>> work;
  return work;
}

/// Takes the menu off the screen before its command runs, which may take a while, and lets the
/// mouse have the owner's pointer again. What the user does meanwhile waits for the loop.
void ClosePopup(HWND owner) {
  RedrawWindow(owner, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  MSG waiting{};
  PeekMessageW(&waiting, nullptr, 0, 0, PM_NOREMOVE);
}

}  // namespace

/// Marks a window's messages as running for as long as it stands.
class Win32Toolkit::Running {
 public:
  Running(Win32Toolkit& toolkit, HWND window) : toolkit_(toolkit) {
    toolkit_.running_.push_back(window);
  }
  ~Running() {
    toolkit_.running_.pop_back();
    toolkit_.destroyIdle();
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  Win32Toolkit& toolkit_;
};

Win32Toolkit::~Win32Toolkit() {
  for (Win32Form* form : forms_) form->toolkitGone();
  if (oleStarted_) OleUninitialize();
}

bool Win32Toolkit::Start() {
  const INITCOMMONCONTROLSEX kinds{sizeof kinds, ICC_TREEVIEW_CLASSES | ICC_LISTVIEW_CLASSES |
                                                     ICC_BAR_CLASSES | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&kinds);
  // Only the folder dialogue needs it, and does without on failure.
  oleStarted_ = SUCCEEDED(OleInitialize(nullptr));
  return true;
}

void Win32Toolkit::MakeViews(Form& form) {
  auto view = std::make_unique<Win32Form>(*this, form);
  ViewMaker maker(view->handle());
  for (Control* control : form.Controls()) control->accept(maker);
  form.attachView(std::move(view));
}

void Win32Toolkit::DropViews(Form& form) {
  for (Control* control : form.Controls()) control->detachView();
  form.attachView(nullptr);
}

void Win32Toolkit::destroyLater(UniqueWindow window) {
  leaving_.push_back(std::move(window));
  destroyIdle();
}

// A control goes on with its own work when the handler of its notification comes back, so its
// window must still be there then.
void Win32Toolkit::destroyIdle() {
  const auto idle = [this](const UniqueWindow& window) {
    return std::find(running_.begin(), running_.end(), window.get()) == running_.end();
  };
  std::vector<UniqueWindow> doomed;
  for (UniqueWindow& window : leaving_) {
    if (idle(window)) doomed.push_back(std::move(window));
  }
  std::erase(leaving_, nullptr);
}

Win32Form* Win32Toolkit::formOf(HWND window) const {
  const HWND top = window ? GetAncestor(window, GA_ROOT) : nullptr;
  const auto found = std::find_if(forms_.begin(), forms_.end(),
                                  [top](const Win32Form* form) { return form->handle() == top; });
  return found == forms_.end() ? nullptr : *found;
}

bool Win32Toolkit::runOne() {
  MSG message{};
  if (GetMessageW(&message, nullptr, 0, 0) <= 0) return false;
  run(message);
  return true;
}

void Win32Toolkit::run(MSG& message) {
  Win32Form* form = formOf(message.hwnd);
  const HWND top = form ? form->handle() : nullptr;
  const Running running(*this, top);
  if (form && (form->previewKey(message) || IsDialogMessageW(top, &message))) return;
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

bool Win32Toolkit::Run() {
  while (!forms_.empty() && runOne()) {
  }
  return false;
}

void Win32Toolkit::runUntil(const bool& done) {
  while (!done) {
    if (runOne()) continue;
    // The outer loops must learn of it too.
    PostQuitMessage(0);
    return;
  }
}

void Win32Toolkit::DoEvents() {
  MSG message{};
  constexpr UINT kAllButInput = PM_QS_PAINT | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | kAllButInput)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    run(message);
  }
}

// Timers come when nothing else waits in the queue.
void Win32Toolkit::WhenIdle(std::function<void()> work) {
  const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, OnIdle);
  IdleWork()[timer] = std::move(work);
}

void CALLBACK Win32Toolkit::OnIdle(HWND /*window*/, UINT /*message*/, UINT_PTR timer,
                                   DWORD /*time*/) {
  KillTimer(nullptr, timer);
  const auto work = IdleWork().extract(timer);
  if (work) Deliver(work.mapped());
}

// While another program is the active one none of ours is; the newest form stands over the others.
HWND Win32Toolkit::boxOwner() const {
  if (const HWND active = GetActiveWindow()) return active;
  const auto shown = std::find_if(forms_.rbegin(), forms_.rend(), [](const Win32Form* form) {
    return IsWindowVisible(form->handle());
  });
  if (shown != forms_.rend()) return (*shown)->handle();
  return forms_.empty() ? nullptr : forms_.back()->handle();
}

int Win32Toolkit::ShowMessage(const Text& text, UINT style, const Text& title) {
  return MessageBoxW(boxOwner(), Wide(text), Wide(title.empty() ? ApplicationTitle() : title),
                     style);
}

void Win32Toolkit::ReportError(const Text& description) {
  ShowMessage(description, MB_OK | MB_ICONERROR, ApplicationTitle());
}

void Win32Toolkit::ShowPopup(Form& owner, MenuItem& menu, const MenuItem* defaultItem,
                             POINT screen) {
  const Win32Menu popup = Win32Menu::Popup(menu, defaultItem);
  SetForegroundWindow(owner.hWnd());
  const BOOL command = TrackPopupMenuEx(popup.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, screen.x,
                                        screen.y, owner.hWnd(), nullptr);
  if (MenuItem* item = popup.commandOf(static_cast<UINT>(command))) {
    ClosePopup(owner.hWnd());
    Deliver([item] { item->Click(); });
  }
}

// A clipboard that another program holds open just now keeps what it has.
void Win32Toolkit::CopyText(const Text& text) {
  if (!OpenClipboard(GetActiveWindow())) return;
  EmptyClipboard();
  const std::size_t size = (text.size() + 1) * sizeof(char16_t);
  if (const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size)) {
    std::memcpy(GlobalLock(memory), text.c_str(), size);
    GlobalUnlock(memory);
    // The clipboard owns what it takes.
    if (!SetClipboardData(CF_UNICODETEXT, memory)) GlobalFree(memory);
  }
  CloseClipboard();
}

Text Win32Toolkit::BrowseFolder(Form& owner, const Text& title) {
  return ChooseFolder(owner.hWnd(), title);
}

Scale Win32Toolkit::ScreenScale() const {
  return {static_cast<double>(ScreenDpi())};
}

std::unique_ptr<Toolkit> MakePlatformToolkit(int& /*argumentCount*/, char** /*arguments*/) {
  return std::make_unique<Win32Toolkit>();
}

}  // namespace torvane
