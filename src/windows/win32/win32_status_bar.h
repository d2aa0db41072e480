// The view of a status bar: msctls_statusbar32.
#pragma once

#include "windows/controls/simple_controls.h"
#include "windows/win32/win32_control.h"

namespace torvane {

class Win32StatusBar : public Win32View<ControlView, StatusBar> {
 public:
  Win32StatusBar(HWND form, StatusBar& bar, Win32Fonts& fonts);

  void update() override;
  void onFormResized() override;

 private:
  void layOutParts();
};

}  // namespace torvane
