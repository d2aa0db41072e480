// Icons come from three places: the icon theme for folders and kinds of files, .ico files on disk
// for what the program brings along, and the program's own resources. Each keeps all its sizes, and
// Qt takes the one that fits the screen's pixels.
#include "windows/qt/icons.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QMimeDatabase>
#include <QStyle>
#include <QtEndian>
#include <algorithm>
#include <utility>

#include "platform/posix/resources.h"
#include "platform/posix/shell/shell_icons.h"
#include "platform/resource_numbers.h"
#include "windows/qt/text.h"

namespace torvane {
namespace {

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
  QByteArray bytes = Bytes(CursorResource(resource::kHandCursor));
  const int hotX = qFromLittleEndian<quint16>(bytes.constData() + kHotX);
  const int hotY = qFromLittleEndian<quint16>(bytes.constData() + kHotY);
  bytes[kType] = 1;
  const QImage image = QImage::fromData(bytes, "ico");
  if (image.isNull()) return Qt::PointingHandCursor;
  return QCursor(QPixmap::fromImage(image), hotX, hotY);
}

}  // namespace

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

const QIcon& QtIcons::shellIcon(int number) {
  static const QIcon kBlank;
  if (!readsTheme_ && posix::DescribeIcon(number).kind != posix::IconDescription::Kind::IconFile) {
    isWanted_ = true;
    return kBlank;
  }
  const auto [place, fresh] = shellIcons_.try_emplace(number);
  if (fresh) place->second = MakeShellIcon(number);
  return place->second;
}

const QIcon& QtIcons::resourceIcon(int id) {
  const auto [place, fresh] = resourceIcons_.try_emplace(id);
  if (fresh) place->second = IconFromBytes(Bytes(IconResource(id)));
  return place->second;
}

const QImage& QtIcons::resourceImage(int id, int pixels) {
  const auto [place, fresh] = resourceImages_.try_emplace({id, pixels});
  if (fresh) place->second = ImageFromIcon(Bytes(IconResource(id)), pixels);
  return place->second;
}

QCursor CursorOf(MousePointer pointer) {
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

}  // namespace torvane
