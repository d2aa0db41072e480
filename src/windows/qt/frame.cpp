// Qt gives a widget with a pressed button the mouse until the release, which is what is wanted; it
// takes it away again from a widget that is hidden meanwhile, as the splitter does at each step.
#include "windows/qt/frame.h"

#include <QMouseEvent>

#include "windows/controls/form.h"
#include "windows/controls/toolkit.h"
#include "windows/qt/drawing.h"

namespace torvane {
namespace {

int ButtonBits(Qt::MouseButtons buttons) {
  return (buttons.testFlag(Qt::LeftButton) ? kLeftButton : 0) |
         (buttons.testFlag(Qt::RightButton) ? kRightButton : 0) |
         (buttons.testFlag(Qt::MiddleButton) ? 4 : 0);
}

}  // namespace

FrameWidget::FrameWidget(Frame& model, QWidget* parent) : QWidget(parent), model_(model) {
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void FrameWidget::fire(const MouseEvent& target, int button, const QMouseEvent& event) const {
  const int shift = HeldKeys(event.modifiers());
  const Scale scale = model_.Parent().Scale();
  const auto x = static_cast<float>(scale.ToTwips(event.position().x()).count);
  const auto y = static_cast<float>(scale.ToTwips(event.position().y()).count);
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
