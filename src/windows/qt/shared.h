// What the toolkit lends to all its views.
#pragma once

#include "windows/qt/icons.h"
#include "windows/qt/write_back.h"

namespace torvane {

/// Outlives every view.
struct QtShared {
  QtIcons& icons;
  WriteBack& writeBack;
};

}  // namespace torvane
