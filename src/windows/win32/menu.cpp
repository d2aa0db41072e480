#include "windows/win32/menu.h"

#include <algorithm>

namespace torvane {
namespace {

// Below lie the numbers that dialogues use (IDOK, IDCANCEL) and those of the form's controls.
constexpr UINT kFirstCommand = 0x1000;

/// Captions have no access keys; an ampersand in one is meant.
Text Escaped(const Text& caption) {
  Text escaped;
  for (const char16_t unit : caption) escaped.append(unit == u'&' ? 2 : 1, unit);
  return escaped;
}

void RememberItem(HMENU menu, MenuItem& item) {
  MENUINFO info{};
  info.cbSize = sizeof info;
  info.fMask = MIM_MENUDATA;
  info.dwMenuData = reinterpret_cast<ULONG_PTR>(&item);
  SetMenuInfo(menu, &info);
}

MenuItem* RememberedItem(HMENU menu) {
  MENUINFO info{};
  info.cbSize = sizeof info;
  info.fMask = MIM_MENUDATA;
  return GetMenuInfo(menu, &info) ? reinterpret_cast<MenuItem*>(info.dwMenuData) : nullptr;
}

}  // namespace

Win32Menu Win32Menu::Popup(MenuItem& menu, const MenuItem* defaultItem) {
  Win32Menu popup(CreatePopupMenu());
  popup.fill(popup.get(), menu, defaultItem);
  return popup;
}

Win32Menu Win32Menu::Bar(MenuItem& bar) {
  Win32Menu result(CreateMenu());
  result.fill(result.get(), bar, nullptr);
  return result;
}

void Win32Menu::fill(HMENU menu, MenuItem& items, const MenuItem* defaultItem) {
  for (MenuItem& item : items.Items()) {
    if (!item.Visible) continue;
    const Text caption = Escaped(item.Caption);
    const UINT state = item.Enabled ? MF_ENABLED : MF_GRAYED;
    if (item.IsSeparator()) {
      AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    } else if (!item.Items().empty()) {
      // The menu that the item opens belongs to the one that it stands in.
      const HMENU opened = CreatePopupMenu();
      RememberItem(opened, item);
      fill(opened, item, defaultItem);
      AppendMenuW(menu, MF_POPUP | state, reinterpret_cast<UINT_PTR>(opened), Wide(caption));
    } else {
      const UINT command = commandFor(item);
      AppendMenuW(menu, MF_STRING | state, command, Wide(caption));
      if (&item == defaultItem) SetMenuDefaultItem(menu, command, FALSE);
    }
  }
}

void Win32Menu::refill(HMENU menu) {
  MenuItem* item = RememberedItem(menu);
  if (!item) return;
  while (DeleteMenu(menu, 0, MF_BYPOSITION)) {
  }
  fill(menu, *item, nullptr);
}

UINT Win32Menu::commandFor(MenuItem& item) {
  auto place = std::find(commands_.begin(), commands_.end(), &item);
  if (place == commands_.end()) place = commands_.insert(commands_.end(), &item);
  return kFirstCommand + static_cast<UINT>(place - commands_.begin());
}

MenuItem* Win32Menu::commandOf(UINT command) const {
  const std::size_t place = command - kFirstCommand;
  return command >= kFirstCommand && place < commands_.size() ? commands_[place] : nullptr;
}

}  // namespace torvane
