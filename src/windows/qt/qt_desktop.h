// What the toolkit answers for the desktop: the mouse, the capture, the system's metrics and the
// ghost bars that stand for inverted pixels.
#pragma once

#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QRubberBand>
#include <optional>
#include <vector>

#include "platform/posix/window.h"

namespace torvane {

/// The least width of a window with a caption, in pixels.
constexpr int kLeastWindowWidth = 112;

class QtDesktop : public posix::DesktopHost {
 public:
  /// The mouse counts as being at a place for as long as this lives, for a command that the
  /// keyboard has given; nothing leaves it where it is.
  class CursorAt {
   public:
    CursorAt(QtDesktop& desktop, std::optional<QPoint> place) : desktop_(desktop) {
      desktop_.pretended_ = place;
    }
    ~CursorAt() { desktop_.pretended_.reset(); }
    CursorAt(const CursorAt&) = delete;
    CursorAt& operator=(const CursorAt&) = delete;

   private:
    QtDesktop& desktop_;
  };

  QPoint cursorPlace() const;

  POINT cursor() const override;
  void releaseCapture() override;
  void invert(const RECT& screenRect) override;
  int metric(int index) const override;

 private:
  struct Ghost {
    QRect place;
    QPointer<QRubberBand> bar;
  };

  std::optional<QPoint> pretended_;
  std::vector<Ghost> ghosts_;
};

}  // namespace torvane
