// What the program ends with.
#pragma once

namespace torvane::status {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kCalledWrongly = 2;
constexpr int kRefused = 3;  ///< Windows programs run in the world
constexpr int kNoSuch = 4;   ///< list or entry

}  // namespace torvane::status
