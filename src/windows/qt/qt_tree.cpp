// NodeClick follows the press, not the selection: a click on the node already chosen counts, and a
// node chosen by the keyboard counts when its key has been handled. While a click is being answered
// the tree takes no other, so that what is chosen and what the list shows stay one.
#include "windows/qt/qt_tree.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

#include "windows/controls/toolkit.h"
#include "windows/qt/qt_write_back.h"

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
}

QTreeWidgetItem* TreeWidget::selectedItem() const {
  const QList<QTreeWidgetItem*> items = selectedItems();
  return items.isEmpty() ? nullptr : items.first();
}

void TreeWidget::choose(QTreeWidgetItem* item) {
  if (!item || !chosen) return;
  choosing_ = true;
  const QPointer<TreeWidget> alive(this);
  chosen(*item);
  if (alive) choosing_ = false;
}

void TreeWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || choosing_) return;
  const QTreeWidgetItem* before = selectedItem();
  const QPoint position = event->position().toPoint();
  QTreeWidgetItem* pressed = itemAt(position);
  const bool again = pressed && pressed == before && visualItemRect(pressed).contains(position);
  QTreeWidget::mousePressEvent(event);
  // A press on an expander leaves the choice alone; one elsewhere on a row makes it.
  if (again || selectedItem() != before) choose(selectedItem());
}

void TreeWidget::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton) QTreeWidget::mouseMoveEvent(event);
}

void TreeWidget::keyPressEvent(QKeyEvent* event) {
  if (choosing_) return;
  const QTreeWidgetItem* before = selectedItem();
  // Before a node is chosen the first one has the focus, and the first step goes there.
  const bool firstStep = !before && currentItem() && event->key() == Qt::Key_Down;
  if (firstStep) {
    currentItem()->setSelected(true);
  } else {
    QTreeWidget::keyPressEvent(event);
  }
  QTreeWidgetItem* after = selectedItem();
  if (after != before) choose(after);
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
  if (event->type() == QEvent::PaletteChange && themeChanged) themeChanged();
}

QtTree::QtTree(Tree& model, QtPictures& pictures, QWidget& parent)
    : QtControl(model, pictures, {}, &parent), model_(model) {
  // Not shown, but read out.
  widget().setHeaderLabel(ToQString(model.Name()));
  widget().chosen = [&model](const QTreeWidgetItem& item) {
    Node& node = model.Nodes()(item.data(0, kIndexRole).toInt());
    RunCommand([&model, &node] { model.NodeClick(node); });
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
  icons_.clear();
  const ImageList* images = model_.Images();
  for (int number = 1; images && number <= images->Count(); ++number) {
    icons_.push_back(pictures().pictureIcon((*images)(number), widget().palette()));
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
}

void QtTree::imageChanged(const Node& node) {
  const auto slot = static_cast<std::size_t>(node.Image() - 1);
  item(node).setIcon(0, slot < icons_.size() ? icons_[slot] : QIcon());
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
  }
}

int QtTree::selected() const {
  const QTreeWidgetItem* chosen = widget().selectedItem();
  return chosen ? chosen->data(0, kIndexRole).toInt() : 0;
}

void QtTree::setSelected(const Node& node) {
  widget().setCurrentItem(&item(node));
}

}  // namespace torvane
