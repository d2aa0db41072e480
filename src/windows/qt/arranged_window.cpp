// The window is laid out by hand, so that its client area and the controls in it have their places
// before it is first shown: the program restores its size and position on a hidden window.
#include "windows/qt/arranged_window.h"

#include <QEvent>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "windows/qt/status_bar.h"
#include "windows/qt/window.h"

namespace torvane {

ArrangedWindow::ArrangedWindow(Qt::WindowFlags flags)
    : QWidget(nullptr, flags),
      menuBar_(&MakeChild<QMenuBar>(this)),
      client_(&MakeChild<QWidget>(this)) {}

void ArrangedWindow::setStatusBar(StatusBarWidget& bar) {
  statusBar_ = &bar;
  arrange();
}

void ArrangedWindow::setClientSize(const QSize& size) {
  const int menuHeight = menuBar_->isHidden() ? 0 : menuBar_->heightForWidth(size.width());
  resize(size.width(), size.height() + menuHeight);
  arrange();
}

QRect ArrangedWindow::outerBounds() const {
  return wanted_.value_or(frameGeometry());
}

void ArrangedWindow::setOuterBounds(const QRect& bounds) {
  const bool framed = isVisible() && !wanted_;
  const QSize frame = framed ? frameGeometry().size() - size() : QSize(0, 0);
  const QSize inner = (bounds.size() - frame).expandedTo(minimumSize());
  if (!framed) wanted_ = QRect(bounds.topLeft(), inner);
  move(bounds.topLeft());
  resize(inner);
  arrange();
}

void ArrangedWindow::placeWithFrame() {
  if (!wanted_ || !windowHandle()->isExposed()) return;
  const QRect wanted = *std::exchange(wanted_, std::nullopt);
  const QMargins frame = windowHandle()->frameMargins();
  if (frame.isNull() || isMaximized() || isMinimized()) return;
  setOuterBounds(wanted);
}

void ArrangedWindow::centreOver(const QWidget& owner) {
  const QRect screen = owner.screen()->availableGeometry();
  if (minimumSize() != maximumSize()) resize(size().boundedTo(screen.size()));
  QRect place = rect();
  place.moveCenter(owner.frameGeometry().center());
  place.moveRight(std::min(place.right(), screen.right()));
  place.moveBottom(std::min(place.bottom(), screen.bottom()));
  move(std::max(place.left(), screen.left()), std::max(place.top(), screen.top()));
}

void ArrangedWindow::arrange() {
  const int menuHeight = menuBar_->isHidden() ? 0 : menuBar_->heightForWidth(width());
  menuBar_->setGeometry(0, 0, width(), menuHeight);
  const QSize before = client_->size();
  const QSize size(width(), std::max(0, height() - menuHeight));
  client_->setGeometry(0, menuHeight, size.width(), size.height());
  if (statusBar_) {
    const int barHeight = statusBar_->wantedHeight();
    statusBar_->setGeometry(0, size.height() - barHeight, size.width(), barHeight);
  }
  if (size != before) clientResized();
}

void ArrangedWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  arrange();
}

void ArrangedWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) arrange();
}

}  // namespace torvane
