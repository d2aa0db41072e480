// Whether there is a screen to open a window on, asked before Qt is started.
#pragma once

namespace torvane {

/// Whether Qt will find a display. Qt ends the process with an abort where it doesn't.
bool HasDisplay();

}  // namespace torvane
