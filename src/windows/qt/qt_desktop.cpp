// A screen's pixels are nobody's to invert under a compositor, so an inverted rectangle is a
// translucent bar in the window under it, which the second call takes away.
#include "windows/qt/qt_desktop.h"

#include <QApplication>
#include <QCursor>
#include <QStyle>
#include <algorithm>

#include "windows/qt/qt_window.h"

namespace torvane {
namespace {

constexpr int kBorder = 1;

QWidget* WindowUnder(const QRect& place) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->frameGeometry().intersects(place)) return window;
  }
  return nullptr;
}

}  // namespace

QPoint QtDesktop::cursorPlace() const {
  return pretended_.value_or(QCursor::pos());
}

POINT QtDesktop::cursor() const {
  const QPoint place = cursorPlace();
  return {place.x(), place.y()};
}

void QtDesktop::releaseCapture() {
  if (QWidget* grabber = QWidget::mouseGrabber()) grabber->releaseMouse();
}

void QtDesktop::invert(const RECT& screenRect) {
  const QRect place(QPoint(screenRect.left, screenRect.top),
                    QPoint(screenRect.right - 1, screenRect.bottom - 1));
  const auto shown =
      std::ranges::find_if(ghosts_, [&place](const Ghost& ghost) { return ghost.place == place; });
  if (shown != ghosts_.end()) {
    Retire(shown->bar);
    ghosts_.erase(shown);
    return;
  }
  QWidget* window = WindowUnder(place);
  if (!window) return;
  auto& bar = MakeChild<QRubberBand>(QRubberBand::Rectangle, window);
  bar.setGeometry(QRect(window->mapFromGlobal(place.topLeft()), place.size()));
  bar.show();
  ghosts_.push_back({place, &bar});
}

int QtDesktop::metric(int index) const {
  switch (index) {
    case SM_CXBORDER:
      return kBorder;
    case SM_CXFRAME:
      // A bar between panes is a frame less a border wide: as wide as the theme's own.
      return QApplication::style()->pixelMetric(QStyle::PM_SplitterWidth) + kBorder;
    case SM_CXMINTRACK:
      return kLeastWindowWidth;
    default:
      return 0;
  }
}

}  // namespace torvane
