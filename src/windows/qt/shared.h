// What the toolkit lends to all its views.
#pragma once

#include <functional>

#include "windows/qt/icons.h"
#include "windows/qt/write_back.h"

namespace torvane {

/// Outlives every view.
struct QtShared {
  QtIcons& icons;
  WriteBack& writeBack;
  std::function<void()> firstPainted;  ///< runs when a window has its first picture
};

}  // namespace torvane
