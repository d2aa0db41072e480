#include "windows/qt/qt_write_back.h"

#include <QCursor>
#include <QGuiApplication>
#include <algorithm>

#include "platform/posix/code_page.h"
#include "platform/posix/write_back.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

/// What becomes of the changes to a file that failed.
struct Outcome {
  const char* oldStands;
  const char* newStands;
};
constexpr Outcome kKept = {
    "The file stands as it was. The changes are kept and tried again with the next command and "
    "when Torvane closes.",
    "The file has the changes, but a power cut may undo them. It is written again with the next "
    "command and when Torvane closes."};
constexpr Outcome kLost = {"The file stands as it was, and the changes to it are lost.",
                           "The file has the changes, but a power cut may undo them."};

/// Start-up counts as the first command: it may have made the window settings.
bool commandRan = true;

void Tell(const std::vector<std::string>& paragraphs) {
  for (const std::string& paragraph : paragraphs) {
    CurrentToolkit().ShowMessage(posix::FromUtf8(paragraph), MB_OK | MB_ICONERROR,
                                 ApplicationTitle());
  }
}

std::string Paragraph(const posix::WriteFailure& failure, const Outcome& outcome) {
  std::string text = failure.path;
  text += failure.isReplaced ? " is written, but not for certain: " : " can't be written: ";
  text += failure.reason;
  if (failure.inUseByWine) {
    text +=
        "\n\nWindows programs are running on this prefix, and Wine holds the file. Close them "
        "and wait a few seconds.";
  }
  return text + "\n\n" + (failure.isReplaced ? outcome.newStands : outcome.oldStands);
}

/// The hourglass for as long as this lives.
class WaitCursor {
 public:
  WaitCursor() { QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor)); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
  ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
};

/// Writes the changes; gives what there is to tell.
std::vector<std::string> Write(const Outcome& outcome) {
  std::vector<std::string> paragraphs;
  if (!posix::ChangesWait()) return paragraphs;
  const WaitCursor hourglass;
  for (const posix::WriteFailure& failure : posix::WriteBackChanges()) {
    paragraphs.push_back(Paragraph(failure, outcome));
  }
  return paragraphs;
}

}  // namespace

void RunCommand(const std::function<void()>& handler) {
  Deliver(handler);
  commandRan = true;
}

WriteBack::WriteBack() {
  teller_.setSingleShot(true);
  QObject::connect(&teller_, &QTimer::timeout, &teller_, [this] {
    Tell(toTell_);
    toTell_.clear();
  });
}

void WriteBack::idle() {
  if (!commandRan || !toTell_.empty()) return;
  commandRan = false;
  Deliver([this] { writeAndTell(); });
}

void WriteBack::writeAndTell() {
  const Paragraphs failures = Write(kKept);
  std::copy_if(failures.begin(), failures.end(), std::back_inserter(toTell_),
               [this](const std::string& failure) { return !std::ranges::count(told_, failure); });
  told_ = failures;
  // The loop is in the middle of going to sleep; a box runs a loop of its own.
  if (!toTell_.empty()) teller_.start();
}

void WriteBack::finish() {
  Deliver([] { Tell(Write(kLost)); });
}

}  // namespace torvane
