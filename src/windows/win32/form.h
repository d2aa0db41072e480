// The view of a form: a top-level window with the windows of its controls.
#pragma once

#include <memory>
#include <optional>

#include "windows/controls/form.h"
#include "windows/win32/control.h"
#include "windows/win32/menu.h"

namespace torvane {

class Win32Toolkit;

class Win32Form : public FormView {
 public:
  /// Makes the window, hidden. Its controls are made behind it, by the toolkit.
  Win32Form(Win32Toolkit& toolkit, Form& form);
  ~Win32Form() override;
  Win32Form(const Win32Form&) = delete;
  Win32Form& operator=(const Win32Form&) = delete;

  HWND handle() const override { return window_.get(); }
  PixelRect outerBounds() const override;
  void setOuterBounds(const PixelRect& bounds) override;
  Scale scale() const override;
  int systemMetric(int index) const override;
  void setClientSize(const PixelSize& size) override;
  int clientWidth() const override;
  int clientHeight() const override;
  WindowState windowState() const override;
  void setWindowState(WindowState state) override;
  void setCaption(const Text& caption) override;
  void setMousePointer(MousePointer pointer) override;
  void show() override;
  void showModal(Form& owner) override;
  void hide() override;
  void paintNow() override;

  /// Shows a key to the form and does what it does in every dialogue: Escape. True if the key has
  /// been dealt with. The key of `message` is changed where the form changes it.
  bool previewKey(MSG& message);
  void toolkitGone() { toolkit_ = nullptr; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static const wchar_t* ClassName();

  /// Whether the form keeps a key that goes down.
  bool keepsKey(WPARAM key);
  bool keepsCharacter(MSG& message, int code);
  /// The menu that a letter opens, for a menu that has no access keys.
  LRESULT menuOfLetter(char16_t letter, HMENU menu) const;
  /// What the message's result is; nothing where the system answers it.
  std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam);
  std::optional<LRESULT> onControlMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void onResized();
  void onDpiChanged(int dpi, const RECT& suggested);
  void onCommand(WPARAM wParam, LPARAM lParam);
  std::optional<LRESULT> onNotify(WPARAM wParam, LPARAM lParam);
  bool onSetCursor(HWND under, WORD part);
  void onActivated(bool active);
  LRESULT defaultButton() const;
  void close();
  bool cancel();

  Win32Control* controlOf(HWND child) const;
  DWORD style() const;
  DWORD extendedStyle() const;
  PixelSize outerSize(const PixelSize& client) const;
  void centre();
  void centreOverOwner();
  void bringIntoSight();
  void setIcons();
  void focusFirst();

  /// Null when the toolkit has gone before the form.
  Win32Toolkit* toolkit_;
  Form& form_;
  UniqueWindow window_;
  Win32Menu bar_;
  UniqueIcon bigIcon_;
  UniqueIcon smallIcon_;
  MousePointer pointer_ = MousePointer::Default;
  /// What a hidden form shows itself as.
  WindowState stateToShow_ = WindowState::Normal;
  HWND lastFocus_ = nullptr;
  HWND modalOwner_ = nullptr;
  /// Set when this view has gone, for the modal loop that outlives it.
  std::shared_ptr<bool> gone_ = std::make_shared<bool>(false);
};

}  // namespace torvane
