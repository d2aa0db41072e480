// The clock that files are stamped by. It moves in steps: what happens twice within one step leaves
// the same stamp, so a stamp proves nothing about a reading that came within a step of it.
#pragma once

#include <cstdint>

#include "platform/posix/atomic_file.h"

namespace torvane::posix {

/// Nanoseconds since 1970.
std::int64_t FileClock();

/// Whether a change at `now` or later would give the file another stamp.
bool IsSettled(const FileStamp& stamp, std::int64_t now);

}  // namespace torvane::posix
