#include "windows/qt/qt_write_back.h"

#include <algorithm>

#include "platform/posix/code_page.h"
#include "platform/posix/write_back.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

constexpr const char* kKept =
    "The file stands as it was. The changes are kept and tried again with the next command and "
    "when Torvane closes.";
constexpr const char* kLost = "The file stands as it was, and the changes to it are lost.";

/// Start-up counts as the first command: it may have made the window settings.
bool commandRan = true;

void Tell(const std::vector<std::string>& paragraphs, const char* outcome) {
  for (const std::string& paragraph : paragraphs) {
    CurrentToolkit().ShowMessage(posix::FromUtf8(paragraph + "\n\n" + outcome),
                                 MB_OK | MB_ICONERROR, ApplicationTitle());
  }
}

}  // namespace

void RunCommand(const std::function<void()>& handler) {
  Deliver(handler);
  commandRan = true;
}

WriteBack::Paragraphs WriteBack::write() {
  Paragraphs paragraphs;
  for (const posix::WriteFailure& failure : posix::WriteBackChanges()) {
    std::string text = failure.path + " can't be written: " + failure.reason;
    if (failure.inUseByWine) {
      text +=
          "\n\nWindows programs are running on this prefix, and Wine holds the file. Close them "
          "and wait a few seconds.";
    }
    paragraphs.push_back(std::move(text));
  }
  return paragraphs;
}

WriteBack::WriteBack() {
  teller_.setSingleShot(true);
  QObject::connect(&teller_, &QTimer::timeout, &teller_, [this] {
    Tell(toTell_, kKept);
    toTell_.clear();
  });
}

void WriteBack::idle() {
  if (!commandRan || !toTell_.empty()) return;
  commandRan = false;
  Deliver([this] { writeAndTell(); });
}

void WriteBack::writeAndTell() {
  const Paragraphs failures = write();
  std::copy_if(failures.begin(), failures.end(), std::back_inserter(toTell_),
               [this](const std::string& failure) { return !std::ranges::count(told_, failure); });
  told_ = failures;
  // The loop is in the middle of going to sleep; a box runs a loop of its own.
  if (!toTell_.empty()) teller_.start();
}

void WriteBack::finish() {
  Deliver([] { Tell(write(), kLost); });
}

}  // namespace torvane
