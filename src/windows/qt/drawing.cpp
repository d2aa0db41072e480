#include "windows/qt/drawing.h"

#include <QFontMetricsF>
#include <QIconEngine>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "windows/qt/text.h"

namespace torvane {
namespace {

constexpr int kSmallIcon = 16;

/// The colour that, combined by not-xor with the ground, gives `fore`; on white that is `fore`
/// itself, and a dark theme's ground gets the same bar.
QColor NotXorPen(const QColor& fore, const QColor& back) {
  return QColor::fromRgb(~(fore.rgb() ^ back.rgb()) | 0xff000000U);
}

/// The relative luminance that WCAG 2 defines, 0 to 1.
double Luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

/// `share` of the second colour in the first.
QColor Mixed(const QColor& first, const QColor& second, double share) {
  const auto mix = [share](int a, int b) { return qRound(a + (b - a) * share); };
  return {mix(first.red(), second.red()), mix(first.green(), second.green()),
          mix(first.blue(), second.blue())};
}

/// The least ratios of brightness between a text and its ground: for what is to be read, and for
/// what stands back behind the rest.
constexpr double kReadable = 4.5;
constexpr double kStillReadable = 3;

/// `wanted`, with as much of `text` in it as it takes to tell it from the ground.
QColor Readable(const QColor& wanted, const QColor& text, const QColor& ground, double ratio) {
  constexpr int kSteps = 10;
  for (int step = 0; step < kSteps; ++step) {
    const QColor mixed = Mixed(wanted, text, static_cast<double>(step) / kSteps);
    if (Contrast(mixed, ground) >= ratio) return mixed;
  }
  return text;
}

/// Carries out one step of a drawing.
class StepPainter {
 public:
  StepPainter(QtIcons& icons, QPainter& painter, const DrawingTools& tools)
      : icons_(icons), painter_(painter), tools_(tools) {}

  void operator()(const DrawShellIcon& step) const {
    icons_.shellIcon(step.number).paint(&painter_, step.left, step.top, kSmallIcon, kSmallIcon);
  }
  void operator()(const DrawResourceIcon& step) const {
    const QRectF place(step.place.left, step.place.top, step.place.width, step.place.height);
    const qreal pixels = step.place.width * painter_.device()->devicePixelRatioF();
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    painter_.drawImage(place, icons_.resourceImage(step.id, qRound(pixels)));
  }
  void operator()(const DrawCaption& step) const {
    painter_.setFont(tools_.font);
    painter_.setPen(ThemeColor(tools_.palette, tools_.fore));
    const qreal ascent = QFontMetricsF(tools_.font).ascent();
    painter_.drawText(QPointF(step.left, step.top + ascent), ToQString(step.text));
  }
  void operator()(const DrawBox& step) const {
    const QColor fore = ThemeColor(tools_.palette, tools_.fore);
    const QRectF box(step.left, step.top, step.width, step.height);
    if (tools_.mode == DrawMode::CopyPen) {
      painter_.fillRect(box, fore);
      return;
    }
    painter_.save();
    painter_.setCompositionMode(QPainter::RasterOp_NotSourceXorDestination);
    painter_.fillRect(box, NotXorPen(fore, ThemeColor(tools_.palette, tools_.back)));
    painter_.restore();
  }

 private:
  QtIcons& icons_;
  QPainter& painter_;
  const DrawingTools& tools_;
};

/// An icon whose drawing is carried out when it is painted, so that a window needn't wait for the
/// icon theme, and at the resolution that it is painted in.
class DrawnIcon : public QIconEngine {
 public:
  DrawnIcon(QtIcons& icons, Picture picture, DrawingTools tools)
      : icons_(icons), picture_(std::move(picture)), tools_(std::move(tools)) {}

  void paint(QPainter* painter, const QRect& place, QIcon::Mode, QIcon::State) override {
    painter->save();
    painter->translate(place.topLeft());
    DrawSteps(icons_, *painter, picture_.steps, tools_);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.setDevicePixelRatio(static_cast<double>(size.width()) / picture_.width);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    DrawnIcon::paint(&painter, {0, 0, picture_.width, picture_.height}, mode, state);
    return pixmap;
  }
  QIconEngine* clone() const override { return std::make_unique<DrawnIcon>(*this).release(); }

 private:
  QtIcons& icons_;
  Picture picture_;
  DrawingTools tools_;
};

}  // namespace

QPalette::ColorRole ThemeRole(SystemColor color) {
  switch (color) {
    case SystemColor::WindowBackground:
      return QPalette::Base;
    case SystemColor::WindowText:
      return QPalette::Text;
    case SystemColor::Highlight:
      return QPalette::Highlight;
    case SystemColor::ButtonShadow:
      return QPalette::Mid;
    case SystemColor::HotLight:
      return QPalette::Link;
    case SystemColor::ButtonText:
      return QPalette::WindowText;
    case SystemColor::Highlight3D:
      return QPalette::Light;
    case SystemColor::GrayText:
      return QPalette::PlaceholderText;
    case SystemColor::ActiveBorder:
    case SystemColor::ButtonFace:
      break;
  }
  return QPalette::Window;
}

QColor LinkColor(const QPalette& palette) {
  return Readable(palette.color(QPalette::Link), palette.color(QPalette::WindowText),
                  palette.color(QPalette::Window), kReadable);
}

QColor GreyTextColor(const QPalette& palette) {
  return Readable(palette.color(QPalette::Disabled, QPalette::Text), palette.color(QPalette::Text),
                  palette.color(QPalette::Base), kStillReadable);
}

void DrawSteps(QtIcons& icons, QPainter& painter, const std::vector<DrawStep>& steps,
               const DrawingTools& tools) {
  const StepPainter paint(icons, painter, tools);
  for (const DrawStep& step : steps) std::visit(paint, step);
}

QIcon PictureIcon(QtIcons& icons, const Picture& picture, const QPalette& palette) {
  DrawingTools tools;
  tools.palette = palette;
  return QIcon(std::make_unique<DrawnIcon>(icons, picture, tools).release());
}

}  // namespace torvane
