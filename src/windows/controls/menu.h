// Menus: a tree of items, on a form's menu bar or popped up.
#pragma once

#include <deque>

#include "storage/text.h"
#include "windows/controls/event.h"

namespace torvane {

/// An item of a menu, or a menu with items. The views read it anew each time they show the menu.
class MenuItem {
 public:
  MenuItem() = default;
  explicit MenuItem(const Text& caption) : Caption(caption) {}
  MenuItem(const MenuItem&) = delete;
  MenuItem& operator=(const MenuItem&) = delete;

  Text Caption;
  /// A text that the program owns.
  Text Tag;
  bool Enabled = true;
  bool Visible = true;

  Event<> Click;

  bool IsSeparator() const { return Caption == u"-"; }
  /// Adds an item behind the others; it lives as long as this menu, at one address.
  MenuItem& Add(const Text& caption);
  /// The visible menu among the items whose caption begins with a letter, as Alt and the letter
  /// open it; captions have no access keys of their own. -1 for none, else its place among the
  /// visible items, from 0.
  int PlaceByLetter(char16_t letter) const;
  std::deque<MenuItem>& Items() { return items_; }
  const std::deque<MenuItem>& Items() const { return items_; }

 private:
  std::deque<MenuItem> items_;
};

}  // namespace torvane
