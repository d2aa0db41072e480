// What the screens and the user's settings give: scale, measures, fonts, colours.
//
// A Windows of before 10 has one scale for all screens; what newer ones know of each window is
// asked of them where they are there to be asked.
#pragma once

#include <map>
#include <tuple>

#include "windows/controls/control.h"
#include "windows/win32/handles.h"

namespace torvane {

/// Dots an inch of the first screen.
int ScreenDpi();
/// Dots an inch of the screen that a window is on, as the system tells it.
int WindowDpi(HWND window);
/// A measure of the system's (SM_...) at so many dots an inch.
int SystemMetricAt(int index, int dpi);
/// The outer rectangle of a window at so many dots an inch from that of its client area.
void AddFrame(RECT& rect, DWORD style, DWORD extendedStyle, BOOL menu, int dpi);

/// A font as a control wants it.
struct FontUse {
  enum class Face {
    Own,         ///< the control's own
    Message,     ///< the one that the user chose for messages
    FixedWidth,  ///< of fixed width, in the size of the message font
  };
  Face face = Face::Own;
  float scale = 1;  ///< relative to the message font's size
  bool bold = false;
};

/// The system's fonts for the program's texts, made once each and kept.
class Win32Fonts {
 public:
  /// The font for so many dots an inch; null for the control's own.
  HFONT get(const FontUse& use, int dpi);

 private:
  std::map<std::tuple<FontUse::Face, int, bool, int>, UniqueFont> fonts_;
};

COLORREF ColorOf(SystemColor color);
/// The colour of a text on a form's ground: `color` where a theme lets it be read there, else that
/// of the form's texts.
COLORREF TextColorOf(SystemColor color);
/// A brush of the system's; nobody deletes it.
HBRUSH BrushOf(SystemColor color);

}  // namespace torvane
