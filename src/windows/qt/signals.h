// The signals that ask a program to end, as the end of a session does.
#pragma once

#include <QSocketNotifier>
#include <QTimer>

#include "platform/posix/disk/atomic_file.h"

namespace torvane {

/// Answers SIGTERM, SIGINT and SIGHUP as if the user had closed the windows one by one, the
/// uppermost first: the window's settings are saved, waiting changes written, temporary files
/// removed. There is one of these at a time.
class ClosingSignals {
 public:
  ClosingSignals();
  ~ClosingSignals();
  ClosingSignals(const ClosingSignals&) = delete;
  ClosingSignals& operator=(const ClosingSignals&) = delete;

 private:
  posix::FileDescriptor wake_;
  QSocketNotifier notifier_;
  QTimer closer_;
};

}  // namespace torvane
