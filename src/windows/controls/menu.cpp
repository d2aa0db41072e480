#include "windows/controls/menu.h"

namespace torvane {

MenuItem& MenuItem::Add(const Text& caption) {
  return items_.emplace_back(caption);
}

}  // namespace torvane
