// Carries out the steps of a drawing, in the colours of the theme.
#pragma once

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QPainter>
#include <QPalette>

#include "windows/controls/picture_box.h"
#include "windows/qt/icons.h"

namespace torvane {

/// The part of a theme's palette that a system colour stands for.
QPalette::ColorRole ThemeRole(SystemColor color);
inline QColor ThemeColor(const QPalette& palette, SystemColor color) {
  return palette.color(ThemeRole(color));
}

/// The theme's colours for a link on a window and for a text that can't be used in a list. Themes
/// of dark windows come with some that can't be told from their ground; those are made readable.
QColor LinkColor(const QPalette& palette);
QColor GreyTextColor(const QPalette& palette);

/// What a drawing is carried out with.
struct DrawingTools {
  QPalette palette;
  QFont font;
  SystemColor back = SystemColor::WindowBackground;
  SystemColor fore = SystemColor::WindowText;
  DrawMode mode = DrawMode::CopyPen;
};

/// Carries out the steps of a drawing. A box in NotXorPen needs a painter on an opaque QImage.
void DrawSteps(QtIcons& icons, QPainter& painter, const std::vector<DrawStep>& steps,
               const DrawingTools& tools);

/// A picture as an icon that is drawn whenever it is painted.
QIcon PictureIcon(QtIcons& icons, const Picture& picture, const QPalette& palette);

}  // namespace torvane
