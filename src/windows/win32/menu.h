// A menu of the program as a menu of Windows.
#pragma once

#include <vector>

#include "windows/controls/menu.h"
#include "windows/win32/handles.h"

namespace torvane {

/// The items of a menu that are visible now, with their menus. Commands are numbers that
/// commandOf() turns back into items.
class Win32Menu {
 public:
  /// What is made from the items of a popup.
  static Win32Menu Popup(MenuItem& menu, const MenuItem* defaultItem);
  /// What is made from the items of a form's menu bar. The menus on it are filled by refill().
  static Win32Menu Bar(MenuItem& bar);

  HMENU get() const { return handle_.get(); }
  bool empty() const { return GetMenuItemCount(get()) == 0; }
  /// Fills a menu of the bar anew, before it opens.
  void refill(HMENU menu);
  /// The item behind a command; null for a number that isn't a command's.
  MenuItem* commandOf(UINT command) const;

 private:
  explicit Win32Menu(HMENU handle) : handle_(handle) {}
  void fill(HMENU menu, MenuItem& items, const MenuItem* defaultItem);
  UINT commandFor(MenuItem& item);

  UniqueMenu handle_;
  std::vector<MenuItem*> commands_;
};

}  // namespace torvane
