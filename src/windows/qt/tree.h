// The view of the tree.
#pragma once

#include <QTimer>
#include <QTreeWidget>
#include <functional>
#include <vector>

#include "windows/controls/tree.h"
#include "windows/qt/control.h"

namespace torvane {

/// A tree's widget. One node is chosen at a time, whoever selects it: the left button, the
/// keyboard, a screen reader. The rest of the mouse leaves the choice alone, because the list
/// beside the tree belongs to the chosen node.
class TreeWidget : public QTreeWidget {
 public:
  explicit TreeWidget(QWidget* parent);

  /// The user has chosen a node, or clicked the chosen one again.
  std::function<void(QTreeWidgetItem&)> chosen;
  std::function<void()> themeChanged;

  QTreeWidgetItem* selectedItem() const;
  /// Chooses a node for the program, which needn't be told.
  void selectSilently(QTreeWidgetItem& item);
  /// Removes an item for the program; what is chosen of itself then isn't told either.
  void removeSilently(QTreeWidgetItem* item);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void selectionChanged(const QItemSelection& now, const QItemSelection& before) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void tellChoice();
  void chooseCollapsed(QTreeWidgetItem* item);

  QTimer later_;         ///< tells of a choice that no key and no button made
  bool untold_ = false;  ///< another node is selected than the program knows
  bool telling_ = true;  ///< off for what the program selects
  bool handling_ = false;
};

class QtTree : public QtControl<TreeView, TreeWidget> {
 public:
  QtTree(Tree& model, const QtShared& shared, QWidget& parent);

  void nodeAdded(const Node& node) override;
  void imageChanged(const Node& node) override;
  void dimmedChanged(const Node& node) override;
  void tipChanged(const Node& node) override;
  void nodesRemoved(int first) override;
  void expansionChanged(const Node& node) override;
  void imageListChanged() override;
  int selected() const override;
  void setSelected(const Node& node) override;

 private:
  QTreeWidgetItem& item(const Node& node) const;
  void userExpanded(const QTreeWidgetItem& item, bool expanded);
  void makeIcons();

  Tree& model_;
  std::vector<QTreeWidgetItem*> items_;  ///< by node index - 1; the tree owns them
  std::vector<QIcon> nodeIcons_;         ///< by image number - 1
  bool showing_ = false;                 ///< what comes from the model doesn't go back to it
};

}  // namespace torvane
