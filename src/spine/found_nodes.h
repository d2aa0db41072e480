// The nodes of the lists that were found: the last ones of the tree, which come and go.
#pragma once

#include "editing/undo_store.h"
#include "finding/found_list.h"
#include "windows/controls/tree.h"

namespace torvane {

class FoundNodes {
 public:
  explicit FoundNodes(Tree& tree) : tree_(tree) {}

  /// The list of a node; null for a node that has none or is the catalogue's.
  const FoundList* ListOf(const Node& node) const;
  /// Whether the node is one of these.
  bool Has(const Node& node) const { return count_ > 0 && node.Index() >= first_; }
  /// Whether Show() would make other nodes of these lists. A list of which a deletion can be taken
  /// back stays for that, empty or not, and goes into `lists`.
  bool AreOthers(std::vector<FoundList>& lists, const UndoStore& undo) const;
  /// Makes the nodes anew. What is expanded stays so, and so does the choice; gives the node that
  /// is to be chosen in place of one whose list has gone, null for none.
  Node* Show(std::vector<FoundList> lists);

 private:
  void Add();

  Tree& tree_;
  std::vector<FoundList> lists_;
  int first_ = 0;  ///< index of the category's node
  int count_ = 0;  ///< of nodes, the category's included
};

}  // namespace torvane
