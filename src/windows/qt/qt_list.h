// The view of the list, and the list messages that its window answers.
#pragma once

#include "windows/qt/qt_control.h"
#include "windows/qt/qt_desktop.h"
#include "windows/qt/qt_list_widget.h"

namespace torvane {

class QtList : public QtControl<ListView, ListWidget> {
 public:
  QtList(const List& model, QtPictures& pictures, QtDesktop& desktop, QWidget& parent);

  void columnAdded(const Text& heading) override;
  void columnsCleared() override;
  void itemAdded(const ListItem& item) override;
  void itemChanged(const ListItem& item) override;
  void itemsRemoved(const std::vector<int>& rows) override;
  void itemsCleared() override;
  bool selected(int row) const override;
  void setSelected(int row, bool selected) override;
  int current() const override;

 private:
  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT hitTest(LVHITTESTINFO& info) const;
  LRESULT setItem(const LVITEMA& item);
  LRESULT setImageList(WPARAM kind, LPARAM list);
  LRESULT setExtendedStyle(WPARAM mask, LPARAM style);
  void notifyRightClick(std::optional<QPoint> screen);

  QtDesktop& desktop_;
  LPARAM imageList_ = 0;
  DWORD extendedStyle_ = 0;
};

}  // namespace torvane
