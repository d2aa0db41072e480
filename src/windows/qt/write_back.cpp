#include "windows/qt/write_back.h"

#include <QCursor>
#include <QGuiApplication>
#include <algorithm>

#include "platform/posix/disk/write_back.h"
#include "platform/posix/text/code_page.h"
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

void Tell(const std::vector<std::string>& paragraphs) {
  for (const std::string& paragraph : paragraphs) {
    CurrentToolkit().ShowMessage(posix::FromUtf8(paragraph), MB_OK | MB_ICONERROR,
                                 ApplicationTitle());
  }
}

constexpr auto kNewStands = posix::WriteFailureKind::NewStands;

std::string Paragraph(const posix::WriteFailure& failure, const Outcome& outcome) {
  std::string text = failure.path;
  if (failure.kind == posix::WriteFailureKind::MayNotLast) {
    return text + " is written, but the change may not last. " + failure.reason +
           "\n\nLook at the list again when the Windows programs have ended.";
  }
  text += failure.kind == kNewStands ? " is written, but not for certain: " : " can't be written: ";
  text += failure.reason;
  if (failure.kind == posix::WriteFailureKind::HeldByUse) {
    text +=
        "\n\nWindows programs are running on this prefix, and Wine holds the file. Close them "
        "and wait a few seconds.";
  }
  return text + "\n\n" + (failure.kind == kNewStands ? outcome.newStands : outcome.oldStands);
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

WriteBack::WriteBack() {
  teller_.setSingleShot(true);
  QObject::connect(&teller_, &QTimer::timeout, &teller_, [this] {
    Tell(toTell_);
    toTell_.clear();
  });
}

void WriteBack::run(const std::function<void()>& handler) {
  Deliver(handler);
  ran_ = true;
}

void WriteBack::idle() {
  if (!ran_ || !toTell_.empty()) return;
  ran_ = false;
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

bool WriteBack::writeAll() {
  Deliver([] { Tell(Write(kKept)); });
  return !posix::ChangesWait();
}

void WriteBack::finish() {
  Deliver([] { Tell(Write(kLost)); });
}

}  // namespace torvane
