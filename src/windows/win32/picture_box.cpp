#include "windows/win32/picture_box.h"

#include "windows/win32/drawing.h"

namespace torvane {

Win32PictureBox::Win32PictureBox(HWND form, PictureBox& box)
    : Win32View(form, box, {.className = AreaClass()}) {
  Win32PictureBox::modelChanged();
}

void Win32PictureBox::modelChanged() {
  const LONG_PTR style = GetWindowLongPtrW(window(), GWL_EXSTYLE);
  const LONG_PTR wanted =
      model().Bordered ? style | WS_EX_STATICEDGE : style & ~LONG_PTR{WS_EX_STATICEDGE};
  if (wanted != style) {
    SetWindowLongPtrW(window(), GWL_EXSTYLE, wanted);
    SetWindowPos(window(), nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
  }
  invalidate();
}

HFONT Win32PictureBox::font() const {
  return Fonts().get({FontUse::Face::Message, 1, model().FontBold}, dpi());
}

SIZE Win32PictureBox::measure(const Text& text) const {
  const ScreenDc dc;
  const Selection selected(dc.get(), font());
  SIZE size{};
  GetTextExtentPoint32W(dc.get(), Wide(text), static_cast<int>(text.size()), &size);
  return size;
}

void Win32PictureBox::onPaint(HDC dc, int width, int height) {
  const RECT all{0, 0, width, height};
  FillRect(dc, &all, BrushOf(model().BackColor));
  DrawSteps(dc, model().Steps(), {model().ForeColor, model().Mode, font()}, 1);
}

}  // namespace torvane
