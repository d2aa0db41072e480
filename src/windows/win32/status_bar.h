// The view of a status bar: msctls_statusbar32.
#pragma once

#include "windows/controls/simple_controls.h"
#include "windows/win32/control.h"

namespace torvane {

class Win32StatusBar : public Win32View<ControlView, StatusBar> {
 public:
  Win32StatusBar(HWND form, StatusBar& bar);

  void modelChanged() override;
  /// The hint belongs to what the first panel names, and shows where the mouse rests on it.
  void setHint(const Text& hint) override;
  void onFormResized() override;
  void onRescaled(double factor) override;

 private:
  int widthOf(const Panel& panel) const;
  void layOutParts();
  void placeTip();

  UniqueWindow tip_;
};

}  // namespace torvane
