// The view of a picture box.
#pragma once

#include "windows/controls/picture_box.h"
#include "windows/win32/win32_area.h"

namespace torvane {

class Win32PictureBox : public Win32View<PictureBoxView, PictureBox>, public AreaEvents {
 public:
  Win32PictureBox(HWND form, PictureBox& box, Win32Fonts& fonts);

  void update() override;
  float textWidth(const Text& text) const override { return static_cast<float>(measure(text).cx); }
  float textHeight(const Text& text) const override { return static_cast<float>(measure(text).cy); }

  void onPaint(HDC dc, int width, int height) override;

 private:
  HFONT font() const;
  SIZE measure(const Text& text) const;

  Win32Fonts& fonts_;
};

}  // namespace torvane
