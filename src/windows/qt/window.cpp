// The records know handles only, so the procedure finds its widget's record here by handle.
#include "windows/qt/window.h"

#include <QCoreApplication>
#include <QWindow>
#include <unordered_map>

#include "windows/controls/keys.h"

namespace torvane {
namespace {

std::unordered_map<HWND, QtWindow*>& Windows() {
  static std::unordered_map<HWND, QtWindow*> windows;
  return windows;
}

}  // namespace

QtWindow::QtWindow(QWidget& widget, Answer answer)
    : widget_(&widget),
      answer_(std::move(answer)),
      handle_(posix::RegisterWindow(&QtWindow::Procedure, 0, 0, *this)) {
  Windows().emplace(handle_, this);
}

QtWindow::~QtWindow() {
  // The last message comes here too, when the view that answers is no longer whole.
  answer_ = nullptr;
  posix::DestroyRegisteredWindow(handle_);
  Windows().erase(handle_);
}

RECT QtWindow::clientRect() const {
  if (!widget_) return {};
  return {0, 0, widget_->width(), widget_->height()};
}

void QtWindow::place(const RECT& rect) {
  if (!widget_) return;
  widget_->setGeometry(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
}

void QtWindow::paintNow() {
  if (widget_) widget_->repaint();
}

POINT QtWindow::toScreen(POINT client) const {
  if (!widget_) return client;
  const QPoint screen = widget_->mapToGlobal(QPoint(client.x, client.y));
  return {screen.x(), screen.y()};
}

LRESULT CALLBACK QtWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto found = Windows().find(window);
  if (found == Windows().end() || !found->second->answer_) return 0;
  return found->second->answer_(message, wParam, lParam);
}

int HeldKeys(Qt::KeyboardModifiers modifiers) {
  return (modifiers.testFlag(Qt::ShiftModifier) ? kShiftKey : 0) |
         (modifiers.testFlag(Qt::ControlModifier) ? kControlKey : 0) |
         (modifiers.testFlag(Qt::AltModifier) ? kAltKey : 0);
}

void Retire(QWidget* widget) {
  if (!widget) return;
  widget->blockSignals(true);
  widget->hide();
  widget->deleteLater();
}

void PaintOnScreen(QWidget& widget) {
  const QWindow* window = widget.window()->windowHandle();
  if (window && widget.isVisible() && !window->isExposed()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
  widget.repaint();
}

}  // namespace torvane
