// The list's rows and columns as Qt's item views read them.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "windows/controls/list.h"
#include "windows/qt/icons.h"

namespace torvane {

/// Reads the texts from the program's list when a view asks. Rows that the program adds are made
/// known to Qt by admitRows(), many at a time; row numbers here are from 0.
class QtListModel : public QAbstractTableModel {
 public:
  QtListModel(const List& list, QtIcons& icons);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  /// The text of a cell as it is shown: one line, cut where nobody reads on.
  QString cellText(int row, int column) const;

  /// Makes rows known that have come since; gives whether there were any.
  bool admitRows();
  /// Forgets the rows behind the first `rows`.
  void truncate(int rows);
  /// Forgets the rows at the given places, from 1, descending; what is known of others moves up.
  void removeRowsAt(const std::vector<int>& rows);
  void columnAdded();
  void columnsCleared();

  /// False for a row that isn't there.
  bool setImage(int row, int number);
  void showImages(bool show) { showsImages_ = show; }
  bool showsImages() const { return showsImages_; }

 private:
  const List& list_;
  QtIcons& icons_;
  int rows_ = 0;     ///< as Qt knows
  int columns_ = 0;  ///< as Qt knows
  bool showsImages_ = false;
  std::vector<int> images_;  ///< by row; a short one ends in rows without an image
};

/// `values` without those at `rows`, places from 1, descending. Places behind its end are no loss.
template <class Value>
void EraseAt(std::vector<Value>& values, const std::vector<int>& rows) {
  std::size_t kept = 0;
  auto next = rows.rbegin();
  for (std::size_t place = 0; place < values.size(); ++place) {
    if (next != rows.rend() && static_cast<std::size_t>(*next) == place + 1) {
      ++next;
      continue;
    }
    values[kept++] = values[place];
  }
  values.resize(kept);
}

}  // namespace torvane
