// Carries out the steps of a drawing.
#pragma once

#include "windows/controls/picture_box.h"
#include "windows/win32/handles.h"

namespace torvane {

/// What the steps leave to the box that they are drawn in.
struct DrawingStyle {
  SystemColor foreground = SystemColor::WindowText;
  DrawMode mode = DrawMode::CopyPen;
  HFONT font = nullptr;
};

/// Draws into `dc`; a drawing's pixel takes `scale` pixels each way.
void DrawSteps(HDC dc, const std::vector<DrawStep>& steps, const DrawingStyle& style, double scale);

/// A picture as an icon of `size` pixels each way, with what it leaves bare transparent.
UniqueIcon IconOf(const Picture& picture, int size);

}  // namespace torvane
