// The view of the tree.
#pragma once

#include <QTreeWidget>
#include <functional>
#include <vector>

#include "windows/controls/tree.h"
#include "windows/qt/qt_control.h"

namespace torvane {

/// A tree's widget. One node is chosen at a time, by the left button or the keyboard; the rest of
/// the mouse leaves the choice alone, because the list beside the tree belongs to the chosen node.
class TreeWidget : public QTreeWidget {
 public:
  explicit TreeWidget(QWidget* parent);

  /// The user has chosen a node, or clicked the chosen one again.
  std::function<void(QTreeWidgetItem&)> chosen;
  std::function<void()> themeChanged;

  QTreeWidgetItem* selectedItem() const;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void choose(QTreeWidgetItem* item);

  bool choosing_ = false;
};

class QtTree : public QtControl<TreeView, TreeWidget> {
 public:
  QtTree(Tree& model, QtPictures& pictures, QWidget& parent);

  void nodeAdded(const Node& node) override;
  void imageChanged(const Node& node) override;
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
  std::vector<QIcon> icons_;             ///< by image number - 1
  bool showing_ = false;                 ///< what comes from the model doesn't go back to it
};

}  // namespace torvane
