// Icons come from three places: the icon theme for folders and kinds of files, .ico files on disk
// for what the program brings along, and the program's own resources. Each keeps all its sizes, and
// Qt takes the one that fits the screen's pixels.
#include "windows/qt/qt_pictures.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QFont>
#include <QFontMetricsF>
#include <QIconEngine>
#include <QImageReader>
#include <QMimeDatabase>
#include <QStyle>
#include <QtEndian>
#include <algorithm>
#include <memory>
#include <utility>

#include "platform/posix/resources.h"
#include "platform/posix/shell_icons.h"
#include "windows/qt/qt_text.h"

namespace torvane {
namespace {

constexpr int kSmallIcon = 16;
constexpr int kHandCursor = 101;
constexpr qint64 kLargestIconFile = 4 << 20;
constexpr int kMostPictures = 64;
constexpr int kLargestPicture = 1024;

QByteArray Bytes(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

/// Adds a picture that looks the same in a selected row: a marked entry stays easy to tell.
void AddPicture(QIcon& icon, const QPixmap& pixmap) {
  icon.addPixmap(pixmap);
  icon.addPixmap(pixmap, QIcon::Selected);
}

QIcon ThemeIcon(const QString& name, QStyle::StandardPixmap fallback) {
  const QIcon icon = QIcon::fromTheme(name);
  return icon.isNull() ? QApplication::style()->standardIcon(fallback) : icon;
}

QIcon FileTypeIcon(const Text& extension) {
  const QMimeType type = QMimeDatabase().mimeTypeForFile(QStringLiteral("x") + ToQString(extension),
                                                         QMimeDatabase::MatchExtension);
  const QIcon icon = QIcon::fromTheme(type.iconName());
  return icon.isNull() ? ThemeIcon(type.genericIconName(), QStyle::SP_FileIcon) : icon;
}

QIcon IconFile(const std::filesystem::path& path) {
  QFile file(QFile::decodeName(path.c_str()));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return IconFromBytes(file.read(kLargestIconFile));
}

QIcon MakeShellIcon(int number) {
  using Kind = posix::IconDescription::Kind;
  const posix::IconDescription description = posix::DescribeIcon(number);
  switch (description.kind) {
    case Kind::Folder:
      return ThemeIcon(QStringLiteral("folder"), QStyle::SP_DirIcon);
    case Kind::OpenFolder:
      return ThemeIcon(QStringLiteral("folder-open"), QStyle::SP_DirOpenIcon);
    case Kind::Drive:
      return ThemeIcon(QStringLiteral("drive-harddisk"), QStyle::SP_DriveHDIcon);
    case Kind::FileType:
      return FileTypeIcon(description.extension);
    case Kind::IconFile:
      if (QIcon icon = IconFile(description.file); !icon.isNull()) return icon;
      break;
    case Kind::Unknown:
      break;
  }
  return ThemeIcon(QStringLiteral("unknown"), QStyle::SP_FileIcon);
}

/// The smallest image in an .ico file that is as wide as wanted, else the widest. The others aren't
/// decoded.
QImage ImageFromIcon(const QByteArray& bytes, int pixels) {
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, "ico");
  int best = 0;
  int bestWidth = 0;
  for (int index = 0; index < reader.imageCount(); ++index) {
    reader.jumpToImage(index);
    const int width = reader.size().width();
    if (width >= pixels ? bestWidth < pixels || width < bestWidth : width > bestWidth) {
      best = index;
      bestWidth = width;
    }
  }
  reader.jumpToImage(best);
  return reader.read();
}

/// The hand of the cursor resource. A .cur file is an .ico file with the hotspot where that has
/// planes and depth.
QCursor HandCursor() {
  constexpr qsizetype kType = 2;
  constexpr qsizetype kHotX = 10;
  constexpr qsizetype kHotY = 12;
  QByteArray bytes = Bytes(CursorResource(kHandCursor));
  const int hotX = qFromLittleEndian<quint16>(bytes.constData() + kHotX);
  const int hotY = qFromLittleEndian<quint16>(bytes.constData() + kHotY);
  bytes[kType] = 1;
  const QImage image = QImage::fromData(bytes, "ico");
  if (image.isNull()) return Qt::PointingHandCursor;
  return QCursor(QPixmap::fromImage(image), hotX, hotY);
}

/// The colour that, combined by not-xor with the ground, gives `fore`; on white that is `fore`
/// itself, and a dark theme's ground gets the same bar.
QColor NotXorPen(const QColor& fore, const QColor& back) {
  return QColor::fromRgb(~(fore.rgb() ^ back.rgb()) | 0xff000000U);
}

/// Carries out one step of a drawing.
class StepPainter {
 public:
  StepPainter(QtPictures& pictures, QPainter& painter, const DrawingTools& tools)
      : pictures_(pictures), painter_(painter), tools_(tools) {}

  void operator()(const DrawShellIcon& step) const {
    pictures_.shellIcon(step.number).paint(&painter_, step.left, step.top, kSmallIcon, kSmallIcon);
  }
  void operator()(const DrawResourceIcon& step) const {
    const QRectF place(step.place.left, step.place.top, step.place.width, step.place.height);
    const qreal pixels = step.place.width * painter_.device()->devicePixelRatioF();
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    painter_.drawImage(place, pictures_.resourceImage(step.id, qRound(pixels)));
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
  QtPictures& pictures_;
  QPainter& painter_;
  const DrawingTools& tools_;
};

/// An icon whose drawing is carried out when it is painted, so that a window needn't wait for the
/// icon theme, and at the resolution that it is painted in.
class DrawnIcon : public QIconEngine {
 public:
  DrawnIcon(QtPictures& pictures, Picture picture, DrawingTools tools)
      : pictures_(pictures), picture_(std::move(picture)), tools_(std::move(tools)) {}

  void paint(QPainter* painter, const QRect& place, QIcon::Mode, QIcon::State) override {
    painter->save();
    painter->translate(place.topLeft());
    pictures_.draw(*painter, picture_.steps, tools_);
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
  QtPictures& pictures_;
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
    case SystemColor::ButtonText:
      return QPalette::WindowText;
    case SystemColor::Highlight3D:
      return QPalette::Light;
    case SystemColor::ActiveBorder:
    case SystemColor::ButtonFace:
      break;
  }
  return QPalette::Window;
}

QIcon IconFromBytes(const QByteArray& bytes) {
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, "ico");
  QIcon icon;
  // A file may name the same bytes thousands of times, and hold a picture of any size.
  const int count = std::min(reader.imageCount(), kMostPictures);
  for (int index = 0; index < count; ++index) {
    if (!reader.jumpToImage(index)) break;
    const QImage image = reader.read();
    if (image.isNull() || std::max(image.width(), image.height()) > kLargestPicture) continue;
    AddPicture(icon, QPixmap::fromImage(image));
  }
  return icon;
}

const QIcon& QtPictures::shellIcon(int number) {
  const auto [place, fresh] = shellIcons_.try_emplace(number);
  if (fresh) place->second = MakeShellIcon(number);
  return place->second;
}

const QIcon& QtPictures::resourceIcon(int id) {
  const auto [place, fresh] = resourceIcons_.try_emplace(id);
  if (fresh) place->second = IconFromBytes(Bytes(IconResource(id)));
  return place->second;
}

const QImage& QtPictures::resourceImage(int id, int pixels) {
  const auto [place, fresh] = resourceImages_.try_emplace({id, pixels});
  if (fresh) place->second = ImageFromIcon(Bytes(IconResource(id)), pixels);
  return place->second;
}

QIcon QtPictures::pictureIcon(const Picture& picture, const QPalette& palette) {
  DrawingTools tools;
  tools.palette = palette;
  return QIcon(std::make_unique<DrawnIcon>(*this, picture, tools).release());
}

QCursor QtPictures::cursor(MousePointer pointer) {
  switch (pointer) {
    case MousePointer::SizeWestEast:
      return Qt::SplitHCursor;
    case MousePointer::Hourglass:
      return Qt::WaitCursor;
    case MousePointer::Hand:
      return HandCursor();
    case MousePointer::Default:
      break;
  }
  return Qt::ArrowCursor;
}

void QtPictures::draw(QPainter& painter, const std::vector<DrawStep>& steps,
                      const DrawingTools& tools) {
  const StepPainter paint(*this, painter, tools);
  for (const DrawStep& step : steps) std::visit(paint, step);
}

}  // namespace torvane
