// The widget of the list: a report of rows, several of them selectable.
#pragma once

#include <QTimer>
#include <QTreeView>
#include <functional>
#include <optional>
#include <vector>

#include "windows/qt/list_model.h"

namespace torvane {

/// Shows a QtListModel. Which rows are selected is kept in a row of flags too, because asking Qt
/// takes time with the number of gaps in the selection. Rows are counted from 0.
class ListWidget : public QTreeView {
 public:
  ListWidget(const List& list, QtIcons& icons, QWidget* parent);

  /// A right-click at a point of the widget, or the menu key with the point that it stands for.
  std::function<void(QPoint place)> rightClicked;

  QtListModel& rows() { return model_; }

  /// Takes over, when the loop runs next, what the program has added or selected.
  void catchUpLater();
  void catchUp();

  bool rowSelected(int row) const;
  void selectRow(int row, bool selected);
  int selectedCount() const;
  void selectAllRows(bool selected);
  int currentRow() const;
  /// Gives a row the focus and brings it into sight; the selection stays.
  void setCurrentRow(int row);
  /// The row under a point of the widget and its column there; nothing beside the cells.
  struct Cell {
    int row;
    int column;
  };
  std::optional<Cell> cellAt(const QPoint& point) const;
  /// Whether a point of the widget, on a cell, is on the row's icon.
  bool onIcon(const QPoint& point) const;

  /// What is said in place of rows while there are none.
  void setEmptyText(const QString& text);

  void removeRowsAt(const std::vector<int>& rows);
  void clearRows();

  /// As wide as the widest of heading and cells; the last column takes the room that is left too.
  void fitColumn(int column);
  void setColumn(int column, int width);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  int sizeHintForColumn(int column) const override;

 private:
  void menuKey();
  void noteSelection(const QItemSelection& selection, bool selected);
  void applySelection();
  void fillLastColumn();

  QtListModel model_;
  QString emptyText_;
  std::vector<bool> selected_;
  QTimer catchUpTimer_;
  bool selectionWaits_ = false;
  bool applying_ = false;  ///< what goes to Qt's selection doesn't come back from it
  bool rightPressed_ = false;
  int fittedLast_ = 0;  ///< width that the last column's cells need, 0 once the user sets one
  bool fitting_ = false;
};

}  // namespace torvane
