// The view of the list, and the list messages that its window answers.
#pragma once

#include "windows/qt/control.h"
#include "windows/qt/list_widget.h"

namespace torvane {

class QtList : public QtControl<ListView, ListWidget> {
 public:
  QtList(const List& model, const QtShared& shared, QWidget& parent);

  void columnAdded(const Text& heading) override;
  void columnsCleared() override;
  void itemAdded(const ListItem& item) override;
  void itemChanged(const ListItem& item) override;
  void itemsRemoved(const std::vector<int>& rows) override;
  void itemsCleared() override;
  bool selected(int row) const override;
  void setSelected(int row, bool selected) override;
  void setAllSelected(bool selected) override;
  int current() const override;
  void modelChanged() override;
  void setCurrent(int row) override;
  void ensureVisible(int row) override;

 private:
  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT hitTest(LVHITTESTINFO& info) const;
  LRESULT setItem(const LVITEMW& item);
  LRESULT setImageList(WPARAM kind, LPARAM list);
  LRESULT setExtendedStyle(WPARAM mask, LPARAM style);
  void notifyRightClick(QPoint place);

  LPARAM imageList_ = 0;
  DWORD extendedStyle_ = 0;
  const List& model_;
};

}  // namespace torvane
