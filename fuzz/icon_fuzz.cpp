// An icon file from the disk of the Windows world never does more harm than to have no picture.
#include <QGuiApplication>

#include "check.h"
#include "windows/qt/icons.h"

namespace {

constexpr int kLargest = 1024;

const QGuiApplication& Application() {
  static int count = 1;
  static char name[] = "icon_fuzz";
  static char* arguments[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static const QGuiApplication application(count, static_cast<char**>(arguments));
  return application;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Application();
  const QIcon icon =
      torvane::IconFromBytes({reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)});
  for (const QSize& picture : icon.availableSizes())
    torvane::fuzz::Check(picture.width() <= kLargest && picture.height() <= kLargest,
                         "pictures are of a sensible size");
  return 0;
}
