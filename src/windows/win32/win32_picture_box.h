// The view of a picture box.
//
// The box measures itself in pixels at 96 dots an inch whatever the screen has, so that the icons
// of 16 and 64 pixels that the program draws fill it on every screen.
#pragma once

#include "windows/controls/picture_box.h"
#include "windows/win32/win32_area.h"

namespace torvane {

class Win32PictureBox : public Win32View<PictureBoxView, PictureBox>, public AreaEvents {
 public:
  Win32PictureBox(HWND form, PictureBox& box, Win32Fonts& fonts);

  PixelRect bounds() const override;
  void place(const PixelRect& bounds) override;
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
