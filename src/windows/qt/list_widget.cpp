// Three things are Qt's and slow by the hundred thousand, so they are done in one step each: rows
// that come or go, selections of scattered rows, and the measuring of texts.
#include "windows/qt/list_widget.h"

#include <QContextMenuEvent>
#include <QFontMetricsF>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "windows/qt/window.h"

namespace torvane {
namespace {

constexpr int kIconSize = 16;
constexpr int kRowSpace = 4;
constexpr int kColumnSpace = 8;
constexpr int kEmptyMargin = 16;
constexpr std::size_t kUnits = 0x10000;
constexpr std::size_t kCandidates = 16;

/// Gives every row the same height without looking at it.
class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
    return {0, std::max(kIconSize, option.fontMetrics.height()) + kRowSpace};
  }
  QSize cellSize(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    return QStyledItemDelegate::sizeHint(option, index);
  }
};

// The widest of very many texts, without laying each of them out.

/// Adds up the widths of single characters, measured once each. What ligatures, kerning and joined
/// scripts change is small against the whole, so the widest texts by this sum are the candidates
/// for the widest text.
class TextWidths {
 public:
  explicit TextWidths(const QFont& font);
  qreal sum(const QString& text);

 private:
  QFontMetricsF metrics_;
  std::vector<float> widths_;  ///< by UTF-16 unit, negative where not yet measured
};

/// Keeps the places of the few widest texts of those offered.
class Widest {
 public:
  void offer(qreal width, int place);
  /// In no order.
  std::vector<int> places() const;

 private:
  struct Candidate {
    qreal width;
    int place;
  };
  std::vector<Candidate> heap_;  ///< the narrowest first
};

TextWidths::TextWidths(const QFont& font) : metrics_(font), widths_(kUnits, -1.0F) {}

qreal TextWidths::sum(const QString& text) {
  qreal sum = 0;
  for (const QChar unit : text) {
    float& width = widths_[unit.unicode()];
    // Half a pair has no width of its own; half an M is more than any character's half.
    if (width < 0) {
      width = static_cast<float>(unit.isSurrogate() ? metrics_.horizontalAdvance(QLatin1Char('M'))
                                                    : metrics_.horizontalAdvance(unit));
    }
    sum += static_cast<qreal>(width);
  }
  return sum;
}

void Widest::offer(qreal width, int place) {
  const auto narrower = [](const Candidate& a, const Candidate& b) { return a.width > b.width; };
  if (heap_.size() == kCandidates) {
    if (width <= heap_.front().width) return;
    std::ranges::pop_heap(heap_, narrower);
    heap_.pop_back();
  }
  heap_.push_back({width, place});
  std::ranges::push_heap(heap_, narrower);
}

std::vector<int> Widest::places() const {
  std::vector<int> places;
  for (const Candidate& candidate : heap_) places.push_back(candidate.place);
  return places;
}

}  // namespace

ListWidget::ListWidget(const List& list, QtIcons& icons, QWidget* parent)
    : QTreeView(parent), model_(list, icons) {
  setItemDelegate(&MakeChild<RowDelegate>(this));
  setModel(&model_);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setIndentation(0);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setIconSize({kIconSize, kIconSize});
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollMode(ScrollPerPixel);
  header()->setStretchLastSection(false);
  header()->setSectionsClickable(false);
  header()->setSectionsMovable(false);
  header()->setHighlightSections(false);
  catchUpTimer_.setSingleShot(true);
  connect(&catchUpTimer_, &QTimer::timeout, this, &ListWidget::catchUp);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this](const QItemSelection& now, const QItemSelection& before) {
            if (applying_) return;
            noteSelection(before, false);
            noteSelection(now, true);
          });
  connect(header(), &QHeaderView::sectionResized, this, [this](int column, int, int) {
    if (fitting_) return;
    if (column == model_.columnCount() - 1) fittedLast_ = 0;
    fillLastColumn();
  });
}

void ListWidget::catchUpLater() {
  if (!catchUpTimer_.isActive()) catchUpTimer_.start();
}

void ListWidget::catchUp() {
  catchUpTimer_.stop();
  model_.admitRows();
  if (selectionWaits_) applySelection();
}

bool ListWidget::rowSelected(int row) const {
  const auto slot = static_cast<std::size_t>(row);
  return slot < selected_.size() && selected_[slot];
}

void ListWidget::selectRow(int row, bool selected) {
  if (rowSelected(row) == selected) return;
  const auto slot = static_cast<std::size_t>(row);
  if (slot >= selected_.size()) selected_.resize(slot + 1);
  selected_[slot] = selected;
  selectionWaits_ = true;
  catchUpLater();
}

int ListWidget::selectedCount() const {
  return static_cast<int>(std::count(selected_.begin(), selected_.end(), true));
}

void ListWidget::selectAllRows(bool selected) {
  catchUp();
  selected_.assign(static_cast<std::size_t>(model_.rowCount()), selected);
  applySelection();
}

void ListWidget::setCurrentRow(int row) {
  catchUp();
  const QModelIndex index = model_.index(row, 0);
  selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
  scrollTo(index);
}

int ListWidget::currentRow() const {
  return currentIndex().row();
}

void ListWidget::noteSelection(const QItemSelection& selection, bool selected) {
  for (const QItemSelectionRange& range : selection) {
    const auto end = static_cast<std::size_t>(range.bottom()) + 1;
    if (end > selected_.size()) selected_.resize(end);
    for (auto row = static_cast<std::size_t>(range.top()); row < end; ++row) {
      selected_[row] = selected;
    }
  }
}

void ListWidget::applySelection() {
  selectionWaits_ = false;
  const int lastColumn = model_.columnCount() - 1;
  const int rows = model_.rowCount();
  QItemSelection selection;
  for (int row = 0; row < rows && lastColumn >= 0; ++row) {
    if (!rowSelected(row)) continue;
    const int first = row;
    while (row + 1 < rows && rowSelected(row + 1)) ++row;
    selection.append({model_.index(first, 0), model_.index(row, lastColumn)});
  }
  applying_ = true;
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  applying_ = false;
}

std::optional<ListWidget::Cell> ListWidget::cellAt(const QPoint& point) const {
  const QPoint inView = viewport()->mapFrom(this, point);
  if (!viewport()->rect().contains(inView)) return {};
  const QModelIndex index = indexAt(inView);
  if (!index.isValid()) return {};
  return Cell{index.row(), index.column()};
}

bool ListWidget::onIcon(const QPoint& point) const {
  const QPoint inView = viewport()->mapFrom(this, point);
  const QModelIndex index = indexAt(inView);
  return index.column() == 0 && model_.showsImages() &&
         inView.x() < visualRect(index).left() + kIconSize + kRowSpace;
}

void ListWidget::setEmptyText(const QString& text) {
  emptyText_ = text;
  setAccessibleDescription(text);
  viewport()->update();
}

void ListWidget::removeRowsAt(const std::vector<int>& rows) {
  const auto goneBefore = [&rows](int row) {
    return static_cast<int>(
        std::count_if(rows.begin(), rows.end(), [row](int place) { return place - 1 < row; }));
  };
  const int rowHeight = std::max(1, sizeHintForIndex(model_.index(0, 0)).height());
  const int scrolled = verticalScrollBar()->value();
  const int top = scrolled / rowHeight;
  const int newScrolled = (top - goneBefore(top)) * rowHeight + scrolled % rowHeight;
  // The focus of a row that goes moves to the next one that stays.
  const int focus = currentRow();
  const int newFocus = focus < 0 ? -1 : focus - goneBefore(focus);

  EraseAt(selected_, rows);
  applying_ = true;
  const bool scrolls = hasAutoScroll();
  setAutoScroll(false);
  model_.removeRowsAt(rows);
  applying_ = false;
  applySelection();
  const int last = model_.rowCount() - 1;
  selectionModel()->setCurrentIndex(model_.index(std::min(newFocus, last), 0),
                                    QItemSelectionModel::NoUpdate);
  executeDelayedItemsLayout();
  updateGeometries();
  verticalScrollBar()->setValue(newScrolled);
  setAutoScroll(scrolls);
}

void ListWidget::clearRows() {
  applying_ = true;
  selected_.clear();
  model_.truncate(0);
  applying_ = false;
  selectionWaits_ = false;
}

int ListWidget::sizeHintForColumn(int column) const {
  TextWidths widths(font());
  Widest widest;
  const int rows = model_.rowCount();
  for (int row = 0; row < rows; ++row) widest.offer(widths.sum(model_.cellText(row, column)), row);

  const auto* delegate = static_cast<const RowDelegate*>(itemDelegate());
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  int width = 0;
  for (const int row : widest.places()) {
    width = std::max(width, delegate->cellSize(option, model_.index(row, column)).width());
  }
  return width + kColumnSpace;
}

void ListWidget::fitColumn(int column) {
  if (column < 0 || column >= model_.columnCount()) return;
  catchUp();
  const int width = std::max(sizeHintForColumn(column), header()->sectionSizeHint(column));
  setColumn(column, width);
  if (column != model_.columnCount() - 1) return;
  fittedLast_ = width;
  fillLastColumn();
}

void ListWidget::setColumn(int column, int width) {
  if (column < 0 || column >= model_.columnCount()) return;
  fitting_ = true;
  header()->resizeSection(column, width);
  fitting_ = false;
}

void ListWidget::fillLastColumn() {
  const int last = model_.columnCount() - 1;
  if (last < 0 || fittedLast_ == 0) return;
  const int others = header()->length() - header()->sectionSize(last);
  setColumn(last, std::max(fittedLast_, viewport()->width() - others));
}

void ListWidget::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  fillLastColumn();
}

void ListWidget::paintEvent(QPaintEvent* event) {
  catchUp();
  QTreeView::paintEvent(event);
  if (model_.rowCount() > 0 || emptyText_.isEmpty()) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Text));
  const QRect room = viewport()->rect().adjusted(kEmptyMargin, 0, -kEmptyMargin, 0);
  painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
}

void ListWidget::mousePressEvent(QMouseEvent* event) {
  catchUp();
  rightPressed_ = event->button() == Qt::RightButton;
  // Qt leaves the selection as it is under a right press beside the rows; the native list lets go.
  if (rightPressed_ && !indexAt(event->position().toPoint()).isValid()) clearSelection();
  QTreeView::mousePressEvent(event);
}

void ListWidget::mouseReleaseEvent(QMouseEvent* event) {
  const bool click = rightPressed_ && event->button() == Qt::RightButton &&
                     viewport()->rect().contains(event->position().toPoint());
  if (event->button() == Qt::RightButton) rightPressed_ = false;
  QTreeView::mouseReleaseEvent(event);
  if (click && rightClicked) rightClicked(viewport()->mapTo(this, event->position().toPoint()));
}

void ListWidget::keyPressEvent(QKeyEvent* event) {
  catchUp();
  // The display only knows the menu key itself.
  if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) return menuKey();
  QTreeView::keyPressEvent(event);
}

void ListWidget::contextMenuEvent(QContextMenuEvent* event) {
  // The mouse's own comes with the press; the menu waits for the release.
  if (event->reason() == QContextMenuEvent::Keyboard) menuKey();
}

void ListWidget::menuKey() {
  if (!rightClicked) return;
  const QModelIndex current = currentIndex();
  QPoint point = viewport()->rect().center();
  if (current.isValid()) {
    scrollTo(current);
    const QRect row = visualRect(current.siblingAtColumn(0));
    point = {std::max(row.left(), 0) + kIconSize / 2, row.center().y()};
  }
  rightClicked(viewport()->mapTo(this, point));
}

}  // namespace torvane
