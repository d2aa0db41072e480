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

void Control::BringToFront() {
  if (ControlView* view = controlView()) view->bringToFront();
}

void Control::Refresh() {
  if (ControlView* view = controlView()) view->refresh();
}

void Control::updateView() const {
  if (ControlView* view = controlView()) view->update();
}

}  // namespace torvane
