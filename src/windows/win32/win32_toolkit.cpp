#include "windows/win32/win32_toolkit.h"

#include <algorithm>
#include <array>

#include "windows/win32/win32_list.h"
#include "windows/win32/win32_picture_box.h"
#include "windows/win32/win32_simple_controls.h"
#include "windows/win32/win32_status_bar.h"
#include "windows/win32/win32_tree.h"

namespace torvane {
namespace {

constexpr int kTwipsPerInch = 1440;
constexpr int kFirstControlId = 100;

struct FreeIdList {
  void operator()(ITEMIDLIST* list) const { CoTaskMemFree(list); }
};
using UniqueIdList = std::unique_ptr<ITEMIDLIST, FreeIdList>;

/// Makes the view of each kind of control.
class ViewMaker : public ControlVisitor {
 public:
  ViewMaker(HWND form, Win32Fonts& fonts) : form_(form), fonts_(fonts) {}

  void visit(Tree& tree) override { make<Win32Tree>(tree, fonts_); }
  void visit(List& list) override { make<Win32List>(list, fonts_); }
  void visit(StatusBar& bar) override { make<Win32StatusBar>(bar, fonts_); }
  void visit(Frame& frame) override { make<Win32Frame>(frame); }
  void visit(PictureBox& box) override { make<Win32PictureBox>(box, fonts_); }
  void visit(Label& label) override { make<Win32Label>(label, fonts_); }
  void visit(Line& line) override { make<Win32Line>(line); }
  void visit(Button& button) override { make<Win32Button>(button, fonts_); }
  void visit(TextBox& box) override { make<Win32TextBox>(box, fonts_); }

 private:
  template <class View, class Model, class... Rest>
  void make(Model& model, Rest&... rest) {
    auto view = std::make_unique<View>(form_, model, rest...);
    SetWindowLongPtrW(view->handle(), GWLP_ID, id_++);
    model.attachView(std::move(view));
  }

  HWND form_;
  Win32Fonts& fonts_;
  int id_ = kFirstControlId;
};

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
  ViewMaker maker(view->handle(), fonts_);
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

void Win32Toolkit::Run() {
  while (!forms_.empty() && runOne()) {
  }
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
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    run(message);
  }
}

int Win32Toolkit::ShowMessage(const Text& text, UINT style, const Text& title) {
  return MessageBoxW(GetActiveWindow(), Wide(text),
                     Wide(title.empty() ? ApplicationTitle() : title), style);
}

void Win32Toolkit::ReportError(const Text& description) {
  ShowMessage(description, MB_OK | MB_ICONERROR, ApplicationTitle());
}

void Win32Toolkit::ShowPopup(Form& owner, MenuItem& menu, const MenuItem* defaultItem) {
  const Win32Menu popup = Win32Menu::Popup(menu, defaultItem);
  POINT point{};
  GetCursorPos(&point);
  SetForegroundWindow(owner.hWnd());
  const BOOL command = TrackPopupMenuEx(popup.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, point.x,
                                        point.y, owner.hWnd(), nullptr);
  if (MenuItem* item = popup.commandOf(static_cast<UINT>(command))) {
    ClosePopup(owner.hWnd());
    Deliver([item] { item->Click(); });
  }
}

Text Win32Toolkit::BrowseFolder(Form& owner, const Text& title) {
  BROWSEINFOW record{};
  record.hwndOwner = owner.hWnd();
  record.lpszTitle = Wide(title);
  record.ulFlags = BIF_RETURNONLYFSDIRS;
  const UniqueIdList chosen(SHBrowseForFolderW(&record));
  std::array<wchar_t, MAX_PATH> path{};
  if (!chosen || !SHGetPathFromIDListW(chosen.get(), path.data())) return {};
  return reinterpret_cast<const char16_t*>(path.data());
}

int Win32Toolkit::TwipsPerPixel() const {
  return kTwipsPerInch / ScreenDpi();
}

std::unique_ptr<Toolkit> MakePlatformToolkit(int& /*argumentCount*/, char** /*arguments*/) {
  return std::make_unique<Win32Toolkit>();
}

}  // namespace torvane
