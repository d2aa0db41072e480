// A handler of signals may do next to nothing, so it only wakes the event loop, which closes the
// windows: modal ones have loops of their own that must end before the window below them can go.
#include "windows/qt/signals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QApplication>
#include <QWidget>
#include <cerrno>
#include <csignal>
#include <cstdint>

namespace torvane {
namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

volatile std::sig_atomic_t wakeDescriptor = -1;

void Wake(int) {
  const int before = errno;
  const std::uint64_t once = 1;
  // Nobody could be told of a failure here, and a full counter has woken the loop already.
  [[maybe_unused]] const ssize_t written = write(wakeDescriptor, &once, sizeof once);
  errno = before;
}

void Answer(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int signal : kSignals) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    // One who started us in the background, or with nohup, wants it to be passed over.
    if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
  }
}

/// The window that has to be closed before any other; null when all are.
QWidget* Uppermost() {
  if (QWidget* popup = QApplication::activePopupWidget()) return popup;
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) return window;
  }
  return nullptr;
}

}  // namespace

ClosingSignals::ClosingSignals()
    : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), notifier_(wake_.get(), QSocketNotifier::Read) {
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] {
    std::uint64_t count = 0;
    // It is readable, or this wouldn't be called.
    [[maybe_unused]] const ssize_t size = read(wake_.get(), &count, sizeof count);
    closer_.start();
  });
  QObject::connect(&closer_, &QTimer::timeout, &closer_, [this] {
    QWidget* window = Uppermost();
    if (!window) {
      closer_.stop();
    } else if (window->windowType() != Qt::SplashScreen) {
      // The start goes on to its end first: there is nothing below the splash yet.
      window->close();
    }
  });
  wakeDescriptor = wake_.get();
  Answer(Wake);
}

ClosingSignals::~ClosingSignals() {
  Answer(SIG_DFL);
}

}  // namespace torvane
