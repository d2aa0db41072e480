// Menus of the program as Qt shows them.
#pragma once

#include <QMenu>
#include <QMenuBar>
#include <functional>

#include "windows/controls/menu.h"

namespace torvane {

using MenuChoice = std::function<void(MenuItem&)>;

/// Fills a menu with the visible items of `model`, `bold` among them in bold; `choose` runs for the
/// item that the user chooses. The model must outlive the menu.
void FillMenu(QMenu& menu, MenuItem& model, const MenuItem* bold, const MenuChoice& choose);

/// Fills a menu bar with the visible menus of `model`, each read anew when it opens.
void FillMenuBar(QMenuBar& bar, MenuItem& model, const MenuChoice& choose);

}  // namespace torvane
