// A screen's pixels are nobody's to invert under a compositor, so an inverted rectangle is a
// translucent bar in the window under it, which the second call takes away.
//
// Qt looks for an X server and a Wayland compositor by itself, but what it does without one is to
// print several lines and abort. So each is asked first, in the way in which Qt will ask.
#include "windows/qt/desktop.h"

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QLibraryInfo>
#include <QStyle>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>

#include "windows/qt/window.h"

namespace torvane {
namespace {

constexpr int kBorder = 1;

QWidget* WindowUnder(const QRect& place) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->frameGeometry().intersects(place)) return window;
  }
  return nullptr;
}

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

/// Through the library that Qt will ask with; without that library Qt has another way.
bool XServerAnswers() {
  if (Variable("DISPLAY").empty()) return false;
  const std::unique_ptr<void, int (*)(void*)> library(dlopen("libxcb.so.1", RTLD_LAZY), dlclose);
  if (!library) return true;
  const auto find = [&library](const char* name) { return dlsym(library.get(), name); };
  const auto connect = reinterpret_cast<void* (*)(const char*, int*)>(find("xcb_connect"));
  const auto failed = reinterpret_cast<int (*)(void*)>(find("xcb_connection_has_error"));
  const auto disconnect = reinterpret_cast<void (*)(void*)>(find("xcb_disconnect"));
  if (!connect || !failed || !disconnect) return true;
  void* connection = connect(nullptr, nullptr);
  const bool answers = failed(connection) == 0;
  disconnect(connection);
  return answers;
}

bool SocketAnswers(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  std::ranges::copy(path, address.sun_path);
  const int handle = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (handle < 0) return false;
  const bool answers =
      connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(handle);
  return answers;
}

/// A compositor alone doesn't help: Qt's plugin for it is a package of its own.
bool WaylandAnswers() {
  const std::string name = Variable("WAYLAND_DISPLAY");
  if (name.empty()) return false;
  const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
  if (plugins.entryList({QStringLiteral("libqwayland*")}).isEmpty()) return false;
  return SocketAnswers(name.front() == '/' ? name : Variable("XDG_RUNTIME_DIR") + "/" + name);
}

}  // namespace

bool HasDisplay() {
  // Qt can be told to draw elsewhere: into memory, on a bare screen, over the network.
  const std::string plugin = Variable("QT_QPA_PLATFORM");
  const bool elsewhere =
      !plugin.empty() && !plugin.starts_with("xcb") && !plugin.starts_with("wayland");
  return elsewhere || XServerAnswers() || WaylandAnswers();
}

POINT QtDesktop::cursor() const {
  const QPoint place = QCursor::pos();
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
