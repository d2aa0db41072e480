// What the screen and the user's settings give: scale, fonts, colours.
#pragma once

#include <map>
#include <utility>

#include "windows/controls/control.h"
#include "windows/win32/win32_handles.h"

namespace torvane {

/// Dots an inch that the system tells this process.
int ScreenDpi();

/// The system's fonts for the program's texts, made once each and kept.
class Win32Fonts {
 public:
  /// The font that the user chose for messages; `scale` is relative to its size.
  HFONT message(float scale = 1, bool bold = false);
  /// A font of fixed width in the size of the message font.
  HFONT fixedWidth();

 private:
  std::map<std::pair<int, bool>, UniqueFont> message_;
  UniqueFont fixedWidth_;
};

COLORREF ColorOf(SystemColor color);
/// A brush of the system's; nobody deletes it.
HBRUSH BrushOf(SystemColor color);

}  // namespace torvane
