// Icons and cursors for the views: the shell's icon numbers and the program's resources, each with
// all its sizes.
#pragma once

#include <QCursor>
#include <QIcon>
#include <QImage>
#include <map>
#include <utility>

#include "windows/controls/control.h"

namespace torvane {

/// The icon in the bytes of an .ico file, with all its sizes; a null icon where they are none.
QIcon IconFromBytes(const QByteArray& bytes);

/// The cursor of the system or the program for a pointer.
QCursor CursorOf(MousePointer pointer);

/// The icons read so far. Lives as long as the application.
class QtIcons {
 public:
  /// The small icon behind a number of the shell's image list; a null icon for one of the theme's
  /// before readTheme().
  const QIcon& shellIcon(int number);
  /// From here on the theme's icons are read. Gives whether one has been asked for and drawn blank.
  bool readTheme() {
    readsTheme_ = true;
    return std::exchange(isWanted_, false);
  }
  /// Icon resource `id`.
  const QIcon& resourceIcon(int id);
  /// The image of icon resource `id` to draw at a width of so many pixels.
  const QImage& resourceImage(int id, int pixels);

 private:
  bool readsTheme_ = false;
  bool isWanted_ = false;
  std::map<int, QIcon> shellIcons_;
  std::map<int, QIcon> resourceIcons_;
  std::map<std::pair<int, int>, QImage> resourceImages_;  ///< by number and width
};

}  // namespace torvane
