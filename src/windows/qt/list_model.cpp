#include "windows/qt/list_model.h"

#include <algorithm>

#include "windows/qt/text.h"

namespace torvane {
namespace {

constexpr int kNoImage = -1;

bool IsLineBreaking(QChar unit) {
  return unit.category() == QChar::Other_Control || unit == QChar::LineSeparator ||
         unit == QChar::ParagraphSeparator;
}

}  // namespace

QtListModel::QtListModel(const List& list, QtIcons& icons) : list_(list), icons_(icons) {
  for (int column = 0; column < list.ColumnHeaders().Count(); ++column) QtListModel::columnAdded();
  QtListModel::admitRows();
}

int QtListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int QtListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

bool QtListModel::hasChildren(const QModelIndex& parent) const {
  return !parent.isValid();
}

Qt::ItemFlags QtListModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

QString QtListModel::cellText(int row, int column) const {
  QString shown = ToQString(list_.ListItems()(row + 1).Shown(column));
  std::replace_if(shown.begin(), shown.end(), IsLineBreaking, QLatin1Char(' '));
  return shown;
}

QVariant QtListModel::data(const QModelIndex& index, int role) const {
  const int row = index.row();
  if (!index.isValid() || row >= list_.ListItems().Count()) return {};
  if (role == Qt::DisplayRole) return cellText(row, index.column());
  if (role == Qt::AccessibleDescriptionRole && index.column() == 0) {
    return ToQString(list_.ListItems()(row + 1).ImageNote());
  }
  if (role != Qt::DecorationRole || index.column() != 0 || !showsImages_) return {};
  const auto slot = static_cast<std::size_t>(row);
  if (slot >= images_.size() || images_[slot] == kNoImage) return {};
  return icons_.shellIcon(images_[slot]);
}

QVariant QtListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  if (section >= list_.ColumnHeaders().Count()) return {};
  return ToQString(list_.ColumnHeaders()(section + 1));
}

bool QtListModel::admitRows() {
  const int count = list_.ListItems().Count();
  if (count <= rows_) return false;
  beginInsertRows({}, rows_, count - 1);
  rows_ = count;
  endInsertRows();
  return true;
}

void QtListModel::truncate(int rows) {
  if (rows >= rows_) return;
  beginRemoveRows({}, rows, rows_ - 1);
  rows_ = rows;
  endRemoveRows();
  if (images_.size() > static_cast<std::size_t>(rows)) {
    images_.resize(static_cast<std::size_t>(rows));
  }
}

void QtListModel::removeRowsAt(const std::vector<int>& rows) {
  EraseAt(images_, rows);
  // For Qt the last rows go and the others change: one step, however scattered the gaps are.
  const int left = list_.ListItems().Count();
  if (left < rows_) {
    beginRemoveRows({}, left, rows_ - 1);
    rows_ = left;
    endRemoveRows();
  }
  if (rows_ > 0 && columns_ > 0) emit dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
}

void QtListModel::columnAdded() {
  beginInsertColumns({}, columns_, columns_);
  ++columns_;
  endInsertColumns();
}

void QtListModel::columnsCleared() {
  if (columns_ == 0) return;
  beginRemoveColumns({}, 0, columns_ - 1);
  columns_ = 0;
  endRemoveColumns();
}

bool QtListModel::setImage(int row, int number) {
  if (row < 0 || row >= list_.ListItems().Count()) return false;
  const auto slot = static_cast<std::size_t>(row);
  if (slot >= images_.size()) images_.resize(slot + 1, kNoImage);
  images_[slot] = number;
  return true;
}

}  // namespace torvane
