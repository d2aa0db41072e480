// The view of a list: SysListView32 in report view.
#pragma once

#include "windows/controls/list.h"
#include "windows/win32/win32_control.h"

namespace torvane {

class Win32List : public Win32View<ListView, List> {
 public:
  Win32List(HWND form, List& list, Win32Fonts& fonts);

  void columnAdded(const Text& heading) override;
  void columnsCleared() override;
  void itemAdded(const ListItem& item) override;
  void itemChanged(const ListItem& item) override;
  void itemsRemoved(const std::vector<int>& rows) override;
  void itemsCleared() override;
  bool selected(int row) const override;
  void setSelected(int row, bool selected) override;
  int current() const override;

  void refresh() override;

  LRESULT onNotify(NMHDR& header) override;
  void onPosted(LPARAM /*value*/) override { resumePainting(); }
  void onMenuKey() override;
  bool onCharacter(WPARAM character, LPARAM keys) override;

 private:
  void askForText(int index, int column);
  void setDoubleBuffer(DWORD style);
  void stopPainting();
  void resumePainting();

  const WNDPROC own_;  ///< the control's, behind the program's
  int columns_ = 0;
  bool painting_ = true;
  Text shown_;  ///< what the control was given last, by its address
};

}  // namespace torvane
