#include "windows/controls/tree.h"

#include <utility>

namespace torvane {

Node::Node(Tree& tree, Node* parent, int index, torvane::Text text, int image)
    : tree_(tree), parent_(parent), index_(index), text_(std::move(text)), image_(image) {}

void Node::Image(int image) {
  image_ = image;
  if (TreeView* view = tree_.view()) view->imageChanged(*this);
}

void Node::Dimmed(bool dimmed) {
  if (std::exchange(dimmed_, dimmed) == dimmed) return;
  if (TreeView* view = tree_.view()) view->dimmedChanged(*this);
}

void Node::Tip(torvane::Text tip) {
  tip_ = std::move(tip);
  if (TreeView* view = tree_.view()) view->tipChanged(*this);
}

void Node::Expanded(bool expanded) {
  if (expanded == expanded_ || !hasChildren_) return;
  expanded_ = expanded;
  if (TreeView* view = tree_.view()) view->expansionChanged(*this);
  expanded ? tree_.Expand(*this) : tree_.Collapse(*this);
}

Node& NodeCollection::Add(Node* relative, NodeRelationship relationship, Text text, int image) {
  Node* parent = relationship == NodeRelationship::Child ? relative : nullptr;
  Node& node = nodes_.emplace_back(tree_, parent, Count() + 1, std::move(text), image);
  if (parent) parent->hasChildren_ = true;
  if (TreeView* view = tree_.view()) view->nodeAdded(node);
  return node;
}

void NodeCollection::RemoveFrom(int first) {
  if (TreeView* view = tree_.view()) view->nodesRemoved(first);
  while (Count() >= first) nodes_.pop_back();
  if (tree_.selected_ >= first) tree_.selected_ = 0;
}

Node* Tree::SelectedItem() {
  const int index = view() ? view()->selected() : selected_;
  return index == 0 ? nullptr : &nodes_(index);
}

void Tree::SelectedItem(Node& node) {
  selected_ = node.Index();
  if (view()) view()->setSelected(node);
}

void Tree::Images(const ImageList* images) {
  images_ = images;
  if (view()) view()->imageListChanged();
}

}  // namespace torvane
