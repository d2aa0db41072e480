// The window class of what the system has no control for: an area that its view paints, and that
// sees the mouse.
#pragma once

#include <optional>

#include "windows/win32/control.h"

namespace torvane {

/// What a window of the area class asks of its view.
class AreaEvents {
 public:
  virtual ~AreaEvents() = default;
  /// Paints the client area of that size.
  virtual void onPaint(HDC dc, int width, int height) = 0;
  /// A message that isn't about painting; nothing leaves it to the system.
  virtual std::optional<LRESULT> onMessage(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return std::nullopt;
  }
};

/// The name of the class, which is registered at the first call.
const wchar_t* AreaClass();

}  // namespace torvane
