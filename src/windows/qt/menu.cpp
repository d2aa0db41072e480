#include "windows/qt/menu.h"

#include "windows/qt/text.h"

namespace torvane {

void FillMenu(QMenu& menu, MenuItem& model, const MenuItem* bold, const MenuChoice& choose) {
  for (MenuItem& item : model.Items()) {
    if (!item.Visible) continue;
    if (item.IsSeparator()) {
      menu.addSeparator();
      continue;
    }
    const QString caption = CaptionText(item.Caption);
    if (!item.Items().empty()) {
      QMenu* below = menu.addMenu(caption);
      below->setEnabled(item.Enabled);
      FillMenu(*below, item, bold, choose);
      continue;
    }
    QAction* action = menu.addAction(caption);
    action->setEnabled(item.Enabled);
    if (&item == bold) menu.setDefaultAction(action);
    QObject::connect(action, &QAction::triggered, &menu, [&item, choose] { choose(item); });
  }
}

void FillMenuBar(QMenuBar& bar, MenuItem& model, const MenuChoice& choose) {
  bar.clear();
  for (MenuItem& item : model.Items()) {
    if (!item.Visible) continue;
    QMenu* menu = bar.addMenu(CaptionText(item.Caption));
    QObject::connect(menu, &QMenu::aboutToShow, menu, [menu, &item, choose] {
      menu->clear();
      FillMenu(*menu, item, nullptr, choose);
    });
  }
}

}  // namespace torvane
