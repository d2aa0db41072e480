// The little that the program asks of the system's themes.
#pragma once

#include "platform/winapi.h"

namespace torvane {

/// Whether controls are drawn by a theme now.
bool IsThemed();
/// Has a tree or a list look as those of the system's file windows do.
void UseExplorerTheme(HWND control);

}  // namespace torvane
