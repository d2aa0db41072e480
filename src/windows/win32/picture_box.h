// The view of a picture box.
#pragma once

#include "windows/controls/picture_box.h"
#include "windows/win32/area.h"

namespace torvane {

class Win32PictureBox : public Win32View<PictureBoxView, PictureBox>, public AreaEvents {
 public:
  Win32PictureBox(HWND form, PictureBox& box);

  void modelChanged() override;
  float textWidth(const Text& text) const override { return static_cast<float>(measure(text).cx); }
  float textHeight(const Text& text) const override { return static_cast<float>(measure(text).cy); }

  void onPaint(HDC dc, int width, int height) override;

 private:
  HFONT font() const;
  SIZE measure(const Text& text) const;
};

}  // namespace torvane
