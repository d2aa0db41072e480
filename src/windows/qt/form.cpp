#include "windows/qt/form.h"

#include <QApplication>
#include <QScreen>
#include <QStyle>

#include "windows/controls/toolkit.h"
#include "windows/qt/text.h"

namespace torvane {
namespace {

/// Where Windows keeps a minimized window: far off the screen and small. The rules for the saved
/// size and place count on it.
constexpr PixelRect kMinimized{-32000, -32000, 160, 31};

}  // namespace

QtForm::QtForm(Form& form, const QtShared& shared, std::function<void()> gone)
    : form_(form),
      gone_(std::move(gone)),
      window_(&MakeChild<FormWindow>(form, shared)),
      record_(window_->client()) {
  QtForm::setCaption(form.Caption());
  QtForm::setClientSize({form.DesignWidth, form.DesignHeight});
}

void QtForm::setClientSize(const PixelSize& size) {
  const bool fixed = form_.Border() != BorderStyle::Sizable;
  if (fixed) {
    window_->setMinimumSize(0, 0);
    window_->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
  }
  window_->setClientSize({size.width, size.height});
  if (fixed) window_->setFixedSize(window_->size());
  if (!window_->isVisible()) centre();
}

Scale QtForm::scale() const {
  return CurrentToolkit().ScreenScale();
}

QtForm::~QtForm() {
  QtForm::setMousePointer(MousePointer::Default);
  window_->letGo();
  Retire(window_);
  gone_();
}

void QtForm::centre() {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  window_->move(screen.center() - window_->rect().center());
}

PixelRect QtForm::outerBounds() const {
  if (window_->isMinimized()) return kMinimized;
  const QRect outer = window_->outerBounds();
  return {outer.left(), outer.top(), outer.width(), outer.height()};
}

void QtForm::setOuterBounds(const PixelRect& bounds) {
  window_->setOuterBounds({bounds.left, bounds.top, bounds.width, bounds.height});
}

WindowState QtForm::windowState() const {
  if (window_->isMinimized()) return WindowState::Minimized;
  return window_->isMaximized() ? WindowState::Maximized : WindowState::Normal;
}

void QtForm::setWindowState(WindowState state) {
  const Qt::WindowStates rest =
      window_->windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
  switch (state) {
    case WindowState::Normal:
      window_->setWindowState(rest);
      break;
    case WindowState::Minimized:
      window_->setWindowState(rest | Qt::WindowMinimized);
      break;
    case WindowState::Maximized:
      window_->setWindowState(rest | Qt::WindowMaximized);
      break;
  }
}

void QtForm::setCaption(const Text& caption) {
  window_->setWindowTitle(ToQString(caption));
}

void QtForm::setMousePointer(MousePointer pointer) {
  // The hourglass lies over the controls too, whatever pointer they have of their own.
  const bool hourglass = pointer == MousePointer::Hourglass;
  if (hourglass != hourglass_) {
    hourglass_ = hourglass;
    hourglass ? QGuiApplication::setOverrideCursor(Qt::WaitCursor)
              : QGuiApplication::restoreOverrideCursor();
  }
  if (hourglass || pointer == MousePointer::Default) {
    window_->unsetCursor();
  } else {
    window_->setCursor(CursorOf(pointer));
  }
}

// What was saved may lie on a screen that is gone.
void QtForm::bringIntoSight() {
  if (form_.Border() != BorderStyle::Sizable || window_->isVisible()) return;
  std::vector<PixelRect> screens;
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect place = screen->availableGeometry();
    screens.push_back({place.left(), place.top(), place.width(), place.height()});
  }
  const int caption = window_->style()->pixelMetric(QStyle::PM_TitleBarHeight);
  const PixelRect wanted = outerBounds();
  const PixelRect seen = InSight(wanted, caption, screens);
  if (seen != wanted) setOuterBounds(seen);
}

void QtForm::show() {
  bringIntoSight();
  window_->show();
}

void QtForm::showModal(Form& owner) {
  const auto* ownerView = dynamic_cast<const QtForm*>(owner.view());
  window_->runModal(ownerView ? &ownerView->window() : nullptr);
}

void QtForm::hide() {
  window_->paintOnce();
  window_->hide();
}

void QtForm::paintNow() {
  PaintOnScreen(*window_);
}

}  // namespace torvane
