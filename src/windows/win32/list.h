// The view of a list: SysListView32 in report view.
#pragma once

#include <array>

#include "windows/controls/list.h"
#include "windows/win32/control.h"
#include "windows/win32/shell_images.h"

namespace torvane {

class Win32List : public Win32View<ListView, List> {
 public:
  Win32List(HWND form, List& list);

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

  void paintNow() override;

  void onRescaled(double factor) override;
  LRESULT onNotify(NMHDR& header) override;
  void onPosted(LPARAM /*value*/) override { resumePainting(); }
  void onMenuKey() override;
  bool onCharacter(WPARAM character, LPARAM keys) override;

 private:
  void setState(int row, UINT bits, UINT state);
  LRESULT onDraw(const NMLVCUSTOMDRAW& step);
  LRESULT onEmpty(NMLVEMPTYMARKUP& wanted);
  void askForText(int index, int column);
  void setDoubleBuffer(DWORD style);
  void stopPainting();
  void resumePainting();
  void matchImages();

  const WNDPROC own_;  ///< the control's, behind the program's
  int columns_ = 0;
  bool painting_ = true;
  bool saysEmpty_ = false;  ///< whether the control shows the text for an empty list by itself
  ScaledShellImages images_;
  /// What the control was given last, by its address: a text must stand until two more have been
  /// asked for.
  std::array<Text, 3> shown_;
  std::size_t lastShown_ = 0;
};

}  // namespace torvane
