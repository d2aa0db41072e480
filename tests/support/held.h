// What the running process holds of the system, for tests that it holds no more after much work.
#pragma once

namespace torvane::testing {

struct Held {
  long handles = 0;  ///< file descriptors, or handles of the kernel
  long objects = 0;  ///< of the windows and of drawing; 0 where there is no telling
  long bytes = 0;    ///< of the heap; 0 where there is no telling
};

Held HeldNow();

}  // namespace torvane::testing
