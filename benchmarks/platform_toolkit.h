// The toolkit that main() has started, for the benchmarks that show windows.
#pragma once

#include "windows/controls/toolkit.h"

namespace torvane::benchmarks {

Toolkit& PlatformToolkit();

}  // namespace torvane::benchmarks
