// Windows without a toolkit: a handle stands for a record with a procedure, style bits and named
// properties. What only a real window knows is asked of the view that made the record.
#pragma once

#include "platform/winapi.h"

namespace torvane::posix {

/// What a view answers for its window. All in pixels.
class WindowHost {
 public:
  virtual ~WindowHost() = default;
  virtual RECT clientRect() const = 0;
  /// Places the window in its parent's client area.
  virtual void place(const RECT& rect) = 0;
  /// Paints now what waits to be painted.
  virtual void paintNow() = 0;
  virtual POINT toScreen(POINT client) const = 0;
};

/// What the toolkit answers for the desktop. All in pixels.
class DesktopHost {
 public:
  virtual ~DesktopHost() = default;
  virtual POINT cursor() const = 0;
  virtual void releaseCapture() = 0;
  /// Inverts a rectangle of the screen; the second call at a place restores it.
  virtual void invert(const RECT& screenRect) = 0;
  /// GetSystemMetrics for SM_CXBORDER, SM_CXFRAME and SM_CXMINTRACK.
  virtual int metric(int index) const = 0;
};

/// Makes a window record. `host` must outlive it.
HWND RegisterWindow(WNDPROC procedure, LONG style, LONG extendedStyle, WindowHost& host);
/// Sends WM_DESTROY and forgets the window with its properties.
void DestroyRegisteredWindow(HWND window);
/// The desktop that GetCursorPos and its like ask; null for none (they then fail or give 0).
void SetDesktop(DesktopHost* desktop);

}  // namespace torvane::posix
