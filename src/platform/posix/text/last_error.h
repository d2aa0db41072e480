// From the host's error numbers to those of Windows.
#pragma once

#include "platform/winapi.h"

namespace torvane::posix {

/// The Windows code for an errno value.
DWORD WindowsError(int hostError);

}  // namespace torvane::posix
