// The kernel stamps files by its tick, which is 10 ms at most. File systems that keep whole seconds
// only have steps of up to two of them.
#include "platform/posix/disk/reading_stamp.h"

#include <ctime>

namespace torvane::posix {
namespace {

constexpr std::int64_t kTick = 20'000'000;
constexpr std::int64_t kSecond = 1'000'000'000;

}  // namespace

std::int64_t FileClock() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return now.tv_sec * kSecond + now.tv_nsec;
}

// Only the time of change counts: that of modification can be set at will, to the future too.
ReadingStamp::ReadingStamp(const FileStamp& stamp, std::int64_t begun) : stamp_(stamp) {
  const std::int64_t step = stamp.changed % kSecond == 0 ? 2 * kSecond + kTick : kTick;
  isSettled_ = stamp.changed + step < begun;
}

}  // namespace torvane::posix
