// A drawing as the list of its steps: a picture box records them, a view carries them out.
#pragma once

#include <variant>
#include <vector>

#include "windows/controls/control.h"

namespace torvane {

/// An icon of the shell's small image list at its 16 by 16 pixels.
struct DrawShellIcon {
  int number = 0;
  int left = 0;
  int top = 0;
};

/// Icon resource `id` (platform/resource_numbers.h), drawn from the icon's best size.
struct DrawResourceIcon {
  int id = 0;
  PixelRect place;
};

/// Text in the box's font from its top left corner, in the box's foreground colour.
struct DrawCaption {
  float left = 0;
  float top = 0;
  Text text;
};

/// A filled box in the box's foreground colour, combined with what is there by the box's draw mode.
struct DrawBox {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
};

using DrawStep = std::variant<DrawShellIcon, DrawResourceIcon, DrawCaption, DrawBox>;

/// A drawing of the given size in pixels on a transparent ground.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<DrawStep> steps;
};

}  // namespace torvane
