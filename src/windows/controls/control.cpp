#include "windows/controls/control.h"

#include "windows/controls/form.h"

namespace torvane {

Control::Control(Form& form, Text name) : parent_(form), name_(std::move(name)) {
  form.controls_.push_back(this);
}

HWND Control::hWnd() const {
  const ControlView* view = controlView();
  return view ? view->handle() : nullptr;
}

PixelRect Control::Bounds() const {
  const ControlView* view = controlView();
  return view ? view->bounds() : bounds_;
}

void Control::Move(const PixelRect& bounds) {
  bounds_ = bounds;
  if (ControlView* view = controlView()) view->place(bounds);
}

PixelSize Control::NaturalSize(int width) const {
  const ControlView* view = controlView();
  return view ? view->naturalSize(width) : PixelSize{};
}

void Control::Left(int x) {
  PixelRect bounds = Bounds();
  bounds.left = x;
  Move(bounds);
}

void Control::Visible(bool visible) {
  visible_ = visible;
  if (ControlView* view = controlView()) view->setVisible(visible);
}

void Control::Pointer(MousePointer pointer) {
  pointer_ = pointer;
  if (ControlView* view = controlView()) view->setMousePointer(pointer);
}

void Control::Hint(Text hint) {
  if (hint == hint_) return;
  hint_ = std::move(hint);
  if (ControlView* view = controlView()) view->setHint(hint_);
}

void Control::BringToFront() {
  if (ControlView* view = controlView()) view->bringToFront();
}

bool Control::HasFocus() const {
  const ControlView* view = controlView();
  return view && view->hasFocus();
}

void Control::SetFocus() {
  if (ControlView* view = controlView()) view->takeFocus();
}

void Control::Refresh() {
  if (ControlView* view = controlView()) view->paintNow();
}

void Control::showModel() const {
  if (ControlView* view = controlView()) view->modelChanged();
}

}  // namespace torvane
