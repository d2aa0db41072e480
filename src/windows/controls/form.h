// A window of the program: its controls, its menu bar, its life from load to unload.
#pragma once

#include <memory>
#include <vector>

#include "windows/controls/keys.h"
#include "windows/controls/menu.h"
#include "windows/controls/simple_controls.h"

namespace torvane {

enum class WindowState { Normal = 0, Minimized = 1, Maximized = 2 };

/// What frame a form has.
enum class BorderStyle {
  Sizable,
  Dialog,  ///< caption and close box
  Splash,  ///< no caption
};

/// What a form asks of its view. Outer positions and sizes are in pixels and include the frame.
class FormView {
 public:
  virtual ~FormView() = default;
  virtual HWND handle() const = 0;
  virtual PixelRect outerBounds() const = 0;
  /// A size below what the system allows is raised to its smallest window.
  virtual void setOuterBounds(const PixelRect& bounds) = 0;
  /// The scale of the screen that the form is on.
  virtual Scale scale() const = 0;
  /// A measure of the system's (SM_CXFRAME and its like) at that scale.
  virtual int systemMetric(int index) const = 0;
  /// Another size of the client area; a form that isn't shown stays in the middle of the screen.
  virtual void setClientSize(const PixelSize& size) = 0;
  virtual int clientWidth() const = 0;
  virtual int clientHeight() const = 0;
  virtual WindowState windowState() const = 0;
  virtual void setWindowState(WindowState state) = 0;
  virtual void setCaption(const Text& caption) = 0;
  virtual void setMousePointer(MousePointer pointer) = 0;
  virtual void show() = 0;
  /// Shows the form with `owner` disabled; returns when the form has been unloaded.
  virtual void showModal(Form& owner) = 0;
  virtual void hide() = 0;
  /// Paints the form and its controls now.
  virtual void paintNow() = 0;
};

/// The base of the program's windows.
///
/// A form is loaded when its views are made and its Form_Load has run; a view that the user closes
/// calls Unload().
class Form {
 public:
  explicit Form(BorderStyle border);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  /// Makes the views and runs Form_Load, once.
  void Load();
  /// Runs Form_Unload and lets the views go. Does nothing on a form that isn't loaded.
  void Unload();
  bool Loaded() const { return life_ == Life::Loaded; }
  /// Whether the form has been loaded and unloaded; its controls keep their state, and whoever
  /// wants the window again makes a new form.
  bool Unloaded() const { return life_ == Life::Unloaded; }
  void Show();
  /// Loads the form if need be; returns when it has been unloaded.
  void ShowModal(Form& owner);
  void Hide();
  void Refresh();

  BorderStyle Border() const { return border_; }
  const Text& Caption() const { return caption_; }
  void Caption(Text caption);
  /// Whether the form sees keys before the control with the focus.
  bool KeyPreview = false;
  /// Size of the client area in pixels that a new view has; it comes centred on the screen.
  int DesignWidth = 0;
  int DesignHeight = 0;
  /// Gives the client area another size, now and in new views.
  void DesignSize(const PixelSize& size);

  /// The scale of the screen that the form is on; of the first one without a view.
  torvane::Scale Scale() const;
  /// A measure of the system's (SM_CXFRAME and its like) at that scale.
  int SystemMetric(int index) const;
  /// The form is on a screen of another scale, or the user's font is another: fonts, icons and the
  /// window's size have followed, places are for the form to follow.
  void Rescale();

  /// Outer position, at the scale of the first screen, and size, at the form's own. Zero without a
  /// view.
  Twips Left() const;
  Twips Top() const;
  Twips Width() const;
  Twips Height() const;
  void Move(Twips left, Twips top, Twips width, Twips height);
  torvane::WindowState State() const;
  void State(torvane::WindowState state);
  void Pointer(MousePointer pointer);
  /// Client size in pixels; the design size without a view.
  int ScaleWidth() const;
  int ScaleHeight() const;
  /// Null without a view.
  HWND hWnd() const;

  MenuItem& MenuBar() { return menuBar_; }
  /// In tab order.
  const std::vector<Control*>& Controls() const { return controls_; }
  /// The height that the status bar takes from the bottom of the client area, in pixels.
  int StatusBarHeight() const;

  /// The client area has another size or the window another state.
  Event<> Resize;
  /// The window has become the one that the user works in.
  Event<> Activate;
  /// A key goes down: its KeyCode, and the bits of what is held. A handler that sets the code to 0
  /// keeps the key from KeyPress and the controls.
  Event<int&, int> KeyDown;
  /// A character key, as its ASCII code; a handler that sets it to 0 keeps it from the controls.
  Event<int&> KeyPress;

  void attachView(std::unique_ptr<FormView> view) { view_ = std::move(view); }
  FormView* view() const { return view_.get(); }

 protected:
  virtual void Form_Load() {}
  virtual void Form_Rescale() {}
  virtual void Form_Unload() {}

 private:
  friend class Control;

  BorderStyle border_;
  Text caption_;
  enum class Life { New, Loaded, Unloading, Unloaded };
  Life life_ = Life::New;
  MenuItem menuBar_;
  std::vector<Control*> controls_;
  const StatusBar* statusBar_ = nullptr;
  std::unique_ptr<FormView> view_;

  friend class StatusBar;
};

/// The hourglass over a form for as long as this lives.
class Hourglass {
 public:
  explicit Hourglass(Form& form) : form_(form) { form_.Pointer(MousePointer::Hourglass); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
  ~Hourglass() { form_.Pointer(MousePointer::Default); }

 private:
  Form& form_;
};

}  // namespace torvane
