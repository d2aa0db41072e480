// The view of a tree: SysTreeView32.
#pragma once

#include "windows/controls/tree.h"
#include "windows/win32/control.h"

namespace torvane {

class Win32Tree : public Win32View<TreeView, Tree> {
 public:
  Win32Tree(HWND form, Tree& tree);
  ~Win32Tree() override;
  Win32Tree(const Win32Tree&) = delete;
  Win32Tree& operator=(const Win32Tree&) = delete;

  void nodeAdded(const Node& node) override;
  void imageChanged(const Node& node) override;
  void dimmedChanged(const Node& node) override;
  void tipChanged(const Node& /*node*/) override {}  // asked for when it is shown
  void nodesRemoved(int first) override;
  void expansionChanged(const Node& node) override;
  void imageListChanged() override;
  int selected() const override;
  void setSelected(const Node& node) override;

  void onRescaled(double factor) override;
  LRESULT onNotify(NMHDR& header) override;
  void onPosted(LPARAM index) override;
  bool hasOwnGround() const override { return true; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR self);
  HTREEITEM itemOf(const Node& node) const;
  int indexOf(HTREEITEM item) const;
  HTREEITEM caret() const;
  bool stepToFirst(WPARAM key);
  void choose(int index);
  LRESULT onDraw(NMTVCUSTOMDRAW& step);
  void onInfoTip(NMTVGETINFOTIPW& tip) const;
  void onClick();
  void onSelectionChanged(const NMTREEVIEWW& change);
  void onExpanded(const NMTREEVIEWW& change);

  /// By index of the node, from 0.
  std::vector<HTREEITEM> items_;
  UniqueImageList images_;
  /// Whether the control is getting the focus, when it would select a node by itself.
  bool focusing_ = false;
  /// Whether a change of the selection is told; off for what the program selects.
  bool telling_ = true;
  /// When the selection last changed, in the clock of messages: a click that made it is no second
  /// choice.
  LONG changedAt_ = -1;
};

}  // namespace torvane
