// Under which stamp something was read, and what that proves. The clock that files are stamped by
// moves in steps: what happens twice within one step leaves the same stamp, so a stamp proves
// nothing about a reading that came within a step of it.
#pragma once

#include <cstdint>

#include "platform/posix/disk/atomic_file.h"

namespace torvane::posix {

/// Nanoseconds since 1970 by the clock that files are stamped by.
std::int64_t FileClock();

/// The stamp of a reading of a file or folder. A default one proves nothing.
class ReadingStamp {
 public:
  ReadingStamp() = default;
  /// `begun` is FileClock() from before the reading.
  ReadingStamp(const FileStamp& stamp, std::int64_t begun);

  const FileStamp& stamp() const { return stamp_; }
  /// Whether a change after the reading would have given the file another stamp.
  bool isSettled() const { return isSettled_; }
  /// Whether a file that has this stamp now is as it was read.
  bool proves(const FileStamp& now) const { return isSettled_ && stamp_ == now; }

 private:
  FileStamp stamp_;
  bool isSettled_ = false;
};

}  // namespace torvane::posix
