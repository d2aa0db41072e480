// What the toolkit answers for the desktop: whether there is one, the mouse, the capture, the
// system's metrics and the ghost bars that stand for inverted pixels.
#pragma once

#include <QPointer>
#include <QRect>
#include <QRubberBand>
#include <vector>

#include "platform/posix/window.h"

namespace torvane {

/// The least width of a window with a caption, in pixels.
constexpr int kLeastWindowWidth = 112;

/// Whether Qt will find a display, asked before Qt is started: it ends the process with an abort
/// where it doesn't.
bool HasDisplay();

class QtDesktop : public posix::DesktopHost {
 public:
  POINT cursor() const override;
  void releaseCapture() override;
  void invert(const RECT& screenRect) override;
  int metric(int index) const override;

 private:
  struct Ghost {
    QRect place;
    QPointer<QRubberBand> bar;
  };

  std::vector<Ghost> ghosts_;
};

}  // namespace torvane
