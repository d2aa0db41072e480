// Pictures for the views: the shell's icon numbers, icon resources, drawings, cursors and the
// colours of the theme, at whatever resolution the screen has.
#pragma once

#include <QColor>
#include <QCursor>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <map>
#include <utility>

#include "windows/controls/picture_box.h"

namespace torvane {

/// The part of a theme's palette that a system colour stands for.
QPalette::ColorRole ThemeRole(SystemColor color);
inline QColor ThemeColor(const QPalette& palette, SystemColor color) {
  return palette.color(ThemeRole(color));
}

/// The icon in the bytes of an .ico file, with all its sizes; a null icon where they are none.
QIcon IconFromBytes(const QByteArray& bytes);

/// What a drawing is carried out with.
struct DrawingTools {
  QPalette palette;
  QFont font;
  SystemColor back = SystemColor::WindowBackground;
  SystemColor fore = SystemColor::WindowText;
  DrawMode mode = DrawMode::CopyPen;
};

/// The pictures made so far. Lives as long as the application.
class QtPictures {
 public:
  /// The small icon behind a number of the shell's image list.
  const QIcon& shellIcon(int number);
  /// Icon resource `id`.
  const QIcon& resourceIcon(int id);
  /// The image of icon resource `id` to draw at a width of so many pixels.
  const QImage& resourceImage(int id, int pixels);
  /// A picture of a tree's image list, drawn whenever it is painted.
  QIcon pictureIcon(const Picture& picture, const QPalette& palette);
  QCursor cursor(MousePointer pointer);

  /// Carries out the steps of a drawing. A box in NotXorPen needs a painter on an opaque QImage.
  void draw(QPainter& painter, const std::vector<DrawStep>& steps, const DrawingTools& tools);

 private:
  std::map<int, QIcon> shellIcons_;
  std::map<int, QIcon> resourceIcons_;
  std::map<std::pair<int, int>, QImage> resourceImages_;  ///< by number and width
};

}  // namespace torvane
