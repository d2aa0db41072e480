#include "windows/controls/menu.h"

namespace torvane {

MenuItem& MenuItem::Add(const Text& caption) {
  return items_.emplace_back(caption);
}

int MenuItem::PlaceByLetter(char16_t letter) const {
  const Text wanted = LowerCase(Text(1, letter));
  int place = 0;
  for (const MenuItem& item : items_) {
    if (!item.Visible) continue;
    if (LowerCase(item.Caption.substr(0, 1)) == wanted) return place;
    ++place;
  }
  return -1;
}

}  // namespace torvane
