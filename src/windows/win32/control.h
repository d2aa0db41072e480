// What the views of all controls have in common: a child window of the form, which sends its
// notifications and questions to the form, and the form hands them to the view.
#pragma once

#include "windows/controls/control.h"
#include "windows/win32/handles.h"
#include "windows/win32/screen.h"

namespace torvane {

/// A message that a control posts to its form to run a handler when the native control is done with
/// its own work: wParam is the control's window, lParam what Win32Control::onPosted gets.
constexpr UINT kPostedToControl = WM_APP + 1;

/// What a child window is made from.
struct ChildWindow {
  const wchar_t* className = L"";
  DWORD style = 0;
  DWORD extendedStyle = 0;
  FontUse font = {};
};

/// The fonts of all views.
Win32Fonts& Fonts();

/// The dots an inch that a form of the program, or the one that a control stands on, has now.
int DpiOf(HWND window);
void SetDpi(HWND form, int dpi);
void ForgetDpi(HWND form);

/// What the form asks of the views of its controls.
///
/// The window belongs to the form's, which may outlive the view by the messages that are still
/// running; a view that goes takes its name off the window, and nothing reaches it any more. A
/// handler may let its own view go, so that no view touches itself after Deliver().
class Win32Control {
 public:
  Win32Control(HWND form, const Control& control, const ChildWindow& child);
  virtual ~Win32Control();
  Win32Control(const Win32Control&) = delete;
  Win32Control& operator=(const Win32Control&) = delete;

  /// The view that stands behind a child window of a form, null for none.
  static Win32Control* Of(HWND child);

  virtual LRESULT onNotify(NMHDR& /*header*/) { return 0; }
  virtual void onCommand(UINT /*code*/) {}
  virtual void onPosted(LPARAM /*value*/) {}
  /// The menu key was pressed on the control.
  virtual void onMenuKey() {}
  /// A character typed on the control; true if it goes no further.
  virtual bool onCharacter(WPARAM /*character*/, LPARAM /*keys*/) { return false; }
  virtual void onFormResized() {}
  /// The form is on a screen of another scale: everything but the place is `factor` times as large.
  virtual void onRescaled(double factor);
  /// Whether nothing of the form shows through the control.
  virtual bool hasOwnGround() const { return false; }
  /// The colours to draw with, and the brush of the ground; null for the system's own.
  virtual HBRUSH onColors(HDC /*dc*/) { return nullptr; }
  /// The mouse's shape over the control, null for its own.
  virtual HCURSOR cursor() const;

 protected:
  HWND window() const { return window_; }
  int dpi() const { return DpiOf(window_); }
  Scale scale() const { return {static_cast<double>(dpi())}; }
  void useFont(const FontUse& use);
  /// The font that the control has now.
  HFONT font() const { return Fonts().get(font_, dpi()); }
  /// Size of a text of one or more lines in the control's font, wrapped at `width` pixels unless
  /// that is 0.
  PixelSize textSize(const Text& text, int width = 0) const;
  PixelRect nativeBounds() const;
  void placeNative(const PixelRect& bounds);
  void setVisibleNative(bool visible);
  void setPointer(MousePointer pointer) { pointer_ = pointer; }
  void bringWindowToFront();
  void invalidate();
  void paintNativeNow();

 private:
  HWND window_;
  MousePointer pointer_;
  FontUse font_;
};

/// Gives a child of a control (CHILDID_SELF for itself) the description that screen readers tell;
/// empty for none. Nothing happens where the system has no such service.
void Describe(HWND window, DWORD child, const Text& description);

/// A view of `Model` that is a Win32Control.
template <class View, class Model>
class Win32View : public View, public Win32Control {
 public:
  Win32View(HWND form, Model& model, const ChildWindow& child)
      : Win32Control(form, model, child), model_(model) {}

  HWND handle() const override { return window(); }
  PixelRect bounds() const override { return nativeBounds(); }
  void place(const PixelRect& bounds) override { placeNative(bounds); }
  void setVisible(bool visible) override { setVisibleNative(visible); }
  void setMousePointer(MousePointer pointer) override { setPointer(pointer); }
  void setHint(const Text& hint) override { Describe(window(), CHILDID_SELF, hint); }
  void bringToFront() override { bringWindowToFront(); }
  bool hasFocus() const override { return GetFocus() == window(); }
  void takeFocus() override { SetFocus(window()); }
  void modelChanged() override { invalidate(); }
  void paintNow() override { paintNativeNow(); }

 protected:
  Model& model() { return model_; }
  const Model& model() const { return model_; }

 private:
  Model& model_;
};

/// The system's cursor or the program's own for a pointer; null for the default one.
HCURSOR CursorOf(MousePointer pointer);

}  // namespace torvane
