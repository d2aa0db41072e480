// The view of a tree: SysTreeView32.
#pragma once

#include "windows/controls/tree.h"
#include "windows/win32/win32_control.h"

namespace torvane {

class Win32Tree : public Win32View<TreeView, Tree> {
 public:
  Win32Tree(HWND form, Tree& tree, Win32Fonts& fonts);

  void nodeAdded(const Node& node) override;
  void imageChanged(const Node& node) override;
  void expansionChanged(const Node& node) override;
  void imageListChanged() override;
  int selected() const override { return chosen_; }
  void setSelected(const Node& node) override;

  LRESULT onNotify(NMHDR& header) override;
  void onPosted(LPARAM index) override;
  bool hasOwnGround() const override { return true; }

 private:
  HTREEITEM itemOf(const Node& node) const;
  void choose(LPARAM index);
  LRESULT onDraw(NMTVCUSTOMDRAW& step) const;
  void onClick();
  void onSelectionChanged(const NMTREEVIEWW& change);
  void onExpanded(const NMTREEVIEWW& change);

  /// By index of the node, from 0.
  std::vector<HTREEITEM> items_;
  UniqueImageList images_;
  /// The node last chosen. The control selects one by itself when it first gets the focus, and the
  /// parent when the user collapses the branch with the selection: neither is the user's choice.
  int chosen_ = 0;
};

}  // namespace torvane
