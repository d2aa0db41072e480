// Every change of the selection is told, whoever makes it, and so is a click on the node already
// chosen. A key or a button is told of when the widget has done its own work with it: the answer
// fills a list and lets messages run.
#include "windows/qt/tree.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <utility>

#include "windows/controls/toolkit.h"
#include "windows/qt/drawing.h"

namespace torvane {
namespace {

constexpr int kIconSize = 16;
constexpr int kIndexRole = Qt::UserRole;

}  // namespace

TreeWidget::TreeWidget(QWidget* parent) : QTreeWidget(parent) {
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setIconSize({kIconSize, kIconSize});
  setEditTriggers(NoEditTriggers);
  setHorizontalScrollMode(ScrollPerPixel);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setStretchLastSection(false);
  later_.setSingleShot(true);
  connect(&later_, &QTimer::timeout, this, &TreeWidget::tellChoice);
  connect(this, &QTreeWidget::itemCollapsed, this, &TreeWidget::chooseCollapsed);
}

QTreeWidgetItem* TreeWidget::selectedItem() const {
  const QList<QTreeWidgetItem*> items = selectedItems();
  return items.isEmpty() ? nullptr : items.first();
}

void TreeWidget::selectSilently(QTreeWidgetItem& item) {
  telling_ = false;
  setCurrentItem(&item);
  telling_ = true;
}

void TreeWidget::removeSilently(QTreeWidgetItem* item) {
  telling_ = false;
  if (item->isSelected()) untold_ = false;
  delete item;
  telling_ = true;
}

void TreeWidget::selectionChanged(const QItemSelection& now, const QItemSelection& before) {
  QTreeWidget::selectionChanged(now, before);
  if (!telling_) return;
  untold_ = true;
  if (!handling_) later_.start();
}

void TreeWidget::tellChoice() {
  QTreeWidgetItem* item = selectedItem();
  if (std::exchange(untold_, false) && item && chosen) chosen(*item);
}

// What is chosen stays in sight: a branch that closes over it takes its place.
void TreeWidget::chooseCollapsed(QTreeWidgetItem* item) {
  const QTreeWidgetItem* above = selectedItem();
  while (above && above != item) above = above->parent();
  if (above && selectedItem() != item) setCurrentItem(item);
}

void TreeWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QTreeWidgetItem* before = selectedItem();
  const QPoint position = event->position().toPoint();
  QTreeWidgetItem* pressed = itemAt(position);
  const bool again = pressed && pressed == before && visualItemRect(pressed).contains(position);
  handling_ = true;
  QTreeWidget::mousePressEvent(event);
  handling_ = false;
  if (again) untold_ = true;
  tellChoice();
}

void TreeWidget::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton) QTreeWidget::mouseMoveEvent(event);
}

void TreeWidget::keyPressEvent(QKeyEvent* event) {
  // Before a node is chosen the first one has the focus, and the first step goes there.
  const bool firstStep = !selectedItem() && currentItem() && event->key() == Qt::Key_Down;
  handling_ = true;
  if (firstStep) {
    currentItem()->setSelected(true);
  } else {
    QTreeWidget::keyPressEvent(event);
  }
  handling_ = false;
  tellChoice();
}

QItemSelectionModel::SelectionFlags TreeWidget::selectionCommand(const QModelIndex& index,
                                                                 const QEvent*) const {
  return index.isValid() ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                         : QItemSelectionModel::NoUpdate;
}

void TreeWidget::resizeEvent(QResizeEvent* event) {
  // A row takes the width of the tree, or what its text needs.
  header()->setMinimumSectionSize(viewport()->width());
  QTreeWidget::resizeEvent(event);
}

void TreeWidget::changeEvent(QEvent* event) {
  QTreeWidget::changeEvent(event);
  // A retired widget has outlived the view that would hear it.
  const bool heard = themeChanged && !signalsBlocked();
  if (event->type() == QEvent::PaletteChange && heard) themeChanged();
}

QtTree::QtTree(Tree& model, const QtShared& shared, QWidget& parent)
    : QtControl(model, shared, {}, &parent), model_(model) {
  // Not shown, but read out.
  widget().setHeaderLabel(ToQString(model.Name()));
  widget().chosen = [&model, &writeBack = shared.writeBack](const QTreeWidgetItem& item) {
    Node& node = model.Nodes()(item.data(0, kIndexRole).toInt());
    writeBack.run([&model, &node] { model.NodeClick(node); });
  };
  widget().themeChanged = [this] { QtTree::imageListChanged(); };
  QObject::connect(&widget(), &QTreeWidget::itemExpanded, &widget(),
                   [this](const QTreeWidgetItem* item) { userExpanded(*item, true); });
  QObject::connect(&widget(), &QTreeWidget::itemCollapsed, &widget(),
                   [this](const QTreeWidgetItem* item) { userExpanded(*item, false); });
  makeIcons();
  for (int index = 1; index <= model.Nodes().Count(); ++index) {
    const Node& node = model.Nodes()(index);
    QtTree::nodeAdded(node);
  }
  for (int index = 1; index <= model.Nodes().Count(); ++index) {
    QtTree::expansionChanged(model.Nodes()(index));
  }
}

QTreeWidgetItem& QtTree::item(const Node& node) const {
  return *items_.at(static_cast<std::size_t>(node.Index() - 1));
}

void QtTree::userExpanded(const QTreeWidgetItem& item, bool expanded) {
  if (showing_) return;
  Node& node = model_.Nodes()(item.data(0, kIndexRole).toInt());
  Deliver([&node, expanded] { node.Expanded(expanded); });
}

void QtTree::makeIcons() {
  nodeIcons_.clear();
  const ImageList* images = model_.Images();
  for (int number = 1; images && number <= images->Count(); ++number) {
    nodeIcons_.push_back(PictureIcon(shared().icons, (*images)(number), widget().palette()));
  }
}

void QtTree::nodeAdded(const Node& node) {
  auto added = std::make_unique<QTreeWidgetItem>();
  added->setText(0, ToQString(node.Text()));
  added->setData(0, kIndexRole, node.Index());
  items_.push_back(added.get());
  if (node.Parent()) {
    item(*node.Parent()).addChild(added.release());
  } else {
    widget().addTopLevelItem(added.release());
  }
  QtTree::imageChanged(node);
  QtTree::dimmedChanged(node);
  QtTree::tipChanged(node);
}

void QtTree::tipChanged(const Node& node) {
  item(node).setToolTip(0, ToQString(node.Tip()));
}

void QtTree::nodesRemoved(int first) {
  while (items_.size() >= static_cast<std::size_t>(first)) {
    widget().removeSilently(items_.back());
    items_.pop_back();
  }
}

void QtTree::imageChanged(const Node& node) {
  const auto slot = static_cast<std::size_t>(node.Image() - 1);
  item(node).setIcon(0, slot < nodeIcons_.size() ? nodeIcons_[slot] : QIcon());
}

void QtTree::dimmedChanged(const Node& node) {
  const QBrush grey = GreyTextColor(widget().palette());
  item(node).setData(0, Qt::ForegroundRole, node.Dimmed() ? QVariant(grey) : QVariant());
  item(node).setData(0, Qt::AccessibleDescriptionRole,
                     node.Dimmed() ? ToQString(kDimmedNote) : QString());
}

void QtTree::expansionChanged(const Node& node) {
  showing_ = true;
  item(node).setExpanded(node.Expanded());
  showing_ = false;
}

void QtTree::imageListChanged() {
  makeIcons();
  for (int index = 1; index <= model_.Nodes().Count(); ++index) {
    QtTree::imageChanged(model_.Nodes()(index));
    QtTree::dimmedChanged(model_.Nodes()(index));
  }
}

int QtTree::selected() const {
  const QTreeWidgetItem* chosen = widget().selectedItem();
  return chosen ? chosen->data(0, kIndexRole).toInt() : 0;
}

void QtTree::setSelected(const Node& node) {
  widget().selectSilently(item(node));
}

}  // namespace torvane
