// Qt gives a widget with a pressed button the mouse until the release, which is what is wanted; it
// takes it away again from a widget that is hidden meanwhile, as the splitter does at each step.
#include "windows/qt/qt_frame.h"

#include <QMouseEvent>

#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

int ButtonBits(Qt::MouseButtons buttons) {
  return (buttons.testFlag(Qt::LeftButton) ? kLeftButton : 0) |
         (buttons.testFlag(Qt::RightButton) ? kRightButton : 0) |
         (buttons.testFlag(Qt::MiddleButton) ? 4 : 0);
}

int ShiftBits(Qt::KeyboardModifiers modifiers) {
  return (modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) |
         (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) |
         (modifiers.testFlag(Qt::AltModifier) ? 4 : 0);
}

}  // namespace

FrameWidget::FrameWidget(Frame& model, QWidget* parent) : QWidget(parent), model_(model) {
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void FrameWidget::fire(const MouseEvent& target, int button, const QMouseEvent& event) const {
  const int shift = ShiftBits(event.modifiers());
  const int twips = CurrentToolkit().TwipsPerPixel();
  const auto x = static_cast<float>(event.position().x() * twips);
  const auto y = static_cast<float>(event.position().y() * twips);
  Deliver([&target, button, shift, x, y] { target(button, shift, x, y); });
}

void FrameWidget::mousePressEvent(QMouseEvent* event) {
  held_ = true;
  fire(model_.MouseDown, ButtonBits(event->button()), *event);
}

void FrameWidget::mouseMoveEvent(QMouseEvent* event) {
  fire(model_.MouseMove, ButtonBits(event->buttons()), *event);
}

void FrameWidget::mouseReleaseEvent(QMouseEvent* event) {
  held_ = event->buttons() != Qt::NoButton;
  const QPointer<FrameWidget> alive(this);
  fire(model_.MouseUp, ButtonBits(event->button()), *event);
  if (alive && !held_) setVisible(model_.Visible());
}

void FrameWidget::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), ThemeColor(palette(), model_.BackColor));
}

void QtFrame::setVisible(bool visible) {
  if (!visible && widget().holdsMouse()) return;
  QtControl::setVisible(visible);
}

}  // namespace torvane
