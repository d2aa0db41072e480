// A handler of signals may do next to nothing, so it only wakes the event loop, which closes the
// windows: modal ones have loops of their own that must end before the window below them can go.
#include "windows/qt/qt_signals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <csignal>

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
  for (const int signal : kSignals) sigaction(signal, &action, nullptr);
}

/// Closes the uppermost window and, when its loop has ended, the next.
void CloseWindows() {
  QWidget* uppermost = QApplication::activePopupWidget();
  if (!uppermost) uppermost = QApplication::activeModalWidget();
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!uppermost && window->isVisible()) uppermost = window;
  }
  if (!uppermost) return;
  uppermost->close();
  QTimer::singleShot(0, qApp, CloseWindows);
}

}  // namespace

ClosingSignals::ClosingSignals()
    : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), notifier_(wake_.get(), QSocketNotifier::Read) {
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] {
    std::uint64_t count = 0;
    // It is readable, or this wouldn't be called.
    [[maybe_unused]] const ssize_t size = read(wake_.get(), &count, sizeof count);
    CloseWindows();
  });
  wakeDescriptor = wake_.get();
  Answer(Wake);
}

ClosingSignals::~ClosingSignals() {
  Answer(SIG_DFL);
}

}  // namespace torvane
