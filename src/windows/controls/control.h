// What all controls have in common: a place on their form, and a view that shows them.
//
// A control is a model: plain state that works without a view, which is how most tests run. A
// form's views are made by the toolkit (toolkit.h) when the form is loaded and go when it is
// unloaded. What only the native control knows is asked of the view.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "platform/winapi.h"
#include "storage/text.h"
#include "windows/controls/scale.h"

namespace torvane {

class Button;
class Form;
class Frame;
class Label;
class Line;
class List;
class PictureBox;
class StatusBar;
class TextBox;
class Tree;

/// The mouse's shape over a control or a form.
enum class MousePointer { Default = 0, SizeWestEast = 9, Hourglass = 11, Hand = 99 };

/// A colour of the user's theme, by its number among the system's colours.
enum class SystemColor : std::uint32_t {
  WindowBackground = 0x80000005,
  WindowText = 0x80000008,
  ActiveBorder = 0x8000000A,
  Highlight = 0x8000000D,
  ButtonFace = 0x8000000F,
  ButtonShadow = 0x80000010,
  GrayText = 0x80000011,
  ButtonText = 0x80000012,
  Highlight3D = 0x80000014,
  HotLight = 0x8000001A,  ///< of a link
};

/// What a control of any kind asks of its view.
class ControlView {
 public:
  virtual ~ControlView() = default;
  /// The window for messages, null for a view without one of its own.
  virtual HWND handle() const = 0;
  virtual PixelRect bounds() const = 0;
  virtual void place(const PixelRect& bounds) = 0;
  virtual void setVisible(bool visible) = 0;
  virtual void setMousePointer(MousePointer pointer) = 0;
  /// For assistive technology, and for the mouse where a control shows hints.
  virtual void setHint(const Text& hint) = 0;
  virtual void bringToFront() = 0;
  virtual bool hasFocus() const = 0;
  virtual void takeFocus() = 0;
  /// The size that shows the caption or the text whole, wrapped at `width` pixels where the control
  /// wraps; nothing for a control that has none.
  virtual PixelSize naturalSize(int /*width*/) const { return {}; }
  /// Shows a changed caption, text, colour or drawing of the model; painted when the loop runs.
  virtual void modelChanged() = 0;
  /// Paints now.
  virtual void paintNow() = 0;
};

/// One call for each kind of control, for the toolkits that make the views.
class ControlVisitor {
 public:
  virtual ~ControlVisitor() = default;
  virtual void visit(Tree& tree) = 0;
  virtual void visit(List& list) = 0;
  virtual void visit(StatusBar& bar) = 0;
  virtual void visit(Frame& frame) = 0;
  virtual void visit(PictureBox& box) = 0;
  virtual void visit(Label& label) = 0;
  virtual void visit(Line& line) = 0;
  virtual void visit(Button& button) = 0;
  virtual void visit(TextBox& box) = 0;
};

/// A control of a form. Forms own their controls as members; a control enters its form's list of
/// controls when it is made, in tab order, and never moves.
class Control {
 public:
  /// `name` is what assistive technology calls the control.
  Control(Form& form, ::torvane::Text name);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  virtual void accept(ControlVisitor& visitor) = 0;
  /// Lets the view go; the control keeps its state.
  virtual void detachView() = 0;

  /// The form that the control stands on.
  Form& Parent() const { return parent_; }
  const ::torvane::Text& Name() const { return name_; }
  /// The view's window; null without a view.
  HWND hWnd() const;

  PixelRect Bounds() const;
  int Left() const { return Bounds().left; }
  int Top() const { return Bounds().top; }
  int Width() const { return Bounds().width; }
  int Height() const { return Bounds().height; }
  void Move(const PixelRect& bounds);
  /// What the text needs in the user's font, wrapped at `width` where the control wraps. Zero
  /// without a view.
  PixelSize NaturalSize(int width = 0) const;
  void Left(int x);

  bool Visible() const { return visible_; }
  void Visible(bool visible);
  MousePointer Pointer() const { return pointer_; }
  void Pointer(MousePointer pointer);
  /// A short hint on what the user can do here; empty for none.
  const ::torvane::Text& Hint() const { return hint_; }
  void Hint(::torvane::Text hint);
  /// Puts the control above its siblings.
  void BringToFront();
  /// Whether the user's keys go to the control; never without a view.
  bool HasFocus() const;
  void SetFocus();
  void Refresh();

  /// Has the view show what the control holds now.
  void showModel() const;

 protected:
  virtual ControlView* controlView() const = 0;

 private:
  Form& parent_;
  ::torvane::Text name_;
  PixelRect bounds_;
  bool visible_ = true;
  MousePointer pointer_ = MousePointer::Default;
  ::torvane::Text hint_;
};

/// A value of a control that its view shows: setting it changes the view.
template <class Value>
class Viewed {
 public:
  Viewed(const Control& owner, Value value) : owner_(owner), value_(value) {}
  Viewed(const Viewed&) = delete;
  Viewed& operator=(const Viewed&) = delete;
  Viewed& operator=(Value value) {
    value_ = value;
    owner_.showModel();
    return *this;
  }
  // NOLINTNEXTLINE(google-explicit-constructor): it reads as a plain field
  operator Value() const { return value_; }

 private:
  const Control& owner_;
  Value value_;
};

/// A control whose view has more to tell than a ControlView.
template <class View>
class ControlWithView : public Control {
 public:
  using Control::Control;

  void attachView(std::unique_ptr<View> view) { view_ = std::move(view); }
  void detachView() override { view_.reset(); }
  View* view() const { return view_.get(); }

 protected:
  ControlView* controlView() const override { return view_.get(); }

 private:
  std::unique_ptr<View> view_;
};

}  // namespace torvane
