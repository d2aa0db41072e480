// The tree: nodes in the order of adding, sorted by nobody.
#pragma once

#include <deque>

#include "windows/controls/control.h"
#include "windows/controls/event.h"
#include "windows/controls/image_list.h"

namespace torvane {

class Tree;

/// What a dimmed node says to those who can't see it.
inline constexpr TextView kDimmedNote = u"No list";

/// A node of a tree. Lives until it is removed, at one address.
class Node {
 public:
  Node(Tree& tree, Node* parent, int index, ::torvane::Text text, int image);

  /// 1-based, in order of adding.
  int Index() const { return index_; }
  /// Null for a root.
  Node* Parent() const { return parent_; }
  const ::torvane::Text& Text() const { return text_; }
  /// A text that the program owns, empty unless set.
  const ::torvane::Text& Tag() const { return tag_; }
  void Tag(::torvane::Text tag) { tag_ = std::move(tag); }
  /// 1-based number of a picture in the tree's image list, 0 for none.
  int Image() const { return image_; }
  void Image(int image);
  /// Whether there is nothing behind the node: it is shown as what can't be used is, and told so
  /// (kDimmedNote). It can be chosen all the same.
  bool Dimmed() const { return dimmed_; }
  void Dimmed(bool dimmed);
  /// What is said of the node while the mouse rests on it; empty for nothing.
  const ::torvane::Text& Tip() const { return tip_; }
  void Tip(::torvane::Text tip);
  bool Expanded() const { return expanded_; }
  /// Expands or collapses the node and fires the tree's event. Nothing happens on a node without
  /// children or one that is so already.
  void Expanded(bool expanded);

 private:
  friend class NodeCollection;

  Tree& tree_;
  Node* parent_;
  int index_;
  ::torvane::Text text_;
  ::torvane::Text tag_;
  ::torvane::Text tip_;
  int image_;
  bool dimmed_ = false;
  bool expanded_ = false;
  bool hasChildren_ = false;
};

/// What a tree asks of its view.
class TreeView : public ControlView {
 public:
  virtual void nodeAdded(const Node& node) = 0;
  virtual void imageChanged(const Node& node) = 0;
  virtual void dimmedChanged(const Node& node) = 0;
  virtual void tipChanged(const Node& node) = 0;
  /// The nodes from that index on are going; no choice that this makes is the user's.
  virtual void nodesRemoved(int first) = 0;
  /// Shows node.Expanded(). A view that the user expands calls Node::Expanded itself; it must not
  /// do so for what comes in here.
  virtual void expansionChanged(const Node& node) = 0;
  virtual void imageListChanged() = 0;
  /// The 1-based index of the node last chosen, 0 for none.
  virtual int selected() const = 0;
  virtual void setSelected(const Node& node) = 0;
};

enum class NodeRelationship { None = 0, Child = 4 };

/// The nodes of a tree, counted and indexed from 1.
class NodeCollection {
 public:
  explicit NodeCollection(Tree& tree) : tree_(tree) {}
  /// Adds a root (no relative), or a child of `relative` behind its other children.
  Node& Add(Node* relative, NodeRelationship relationship, Text text, int image);
  /// Removes the nodes from an index on. They have no children in front of it.
  void RemoveFrom(int first);
  int Count() const { return static_cast<int>(nodes_.size()); }
  Node& operator()(int index) { return nodes_.at(static_cast<std::size_t>(index - 1)); }
  const Node& operator()(int index) const { return nodes_.at(static_cast<std::size_t>(index - 1)); }

 private:
  Tree& tree_;
  std::deque<Node> nodes_;
};

/// The tree control.
class Tree : public ControlWithView<TreeView> {
 public:
  using ControlWithView::ControlWithView;
  void accept(ControlVisitor& visitor) override { visitor.visit(*this); }

  NodeCollection& Nodes() { return nodes_; }
  const NodeCollection& Nodes() const { return nodes_; }
  /// The node last chosen, null for none.
  Node* SelectedItem();
  /// Chooses a node without firing NodeClick.
  void SelectedItem(Node& node);
  /// The pictures of the nodes; null for none. Not owned.
  const ImageList* Images() const { return images_; }
  void Images(const ImageList* images);

  /// The user chose a node with mouse or keyboard.
  Event<Node&> NodeClick;
  Event<Node&> Expand;
  Event<Node&> Collapse;

 private:
  friend class NodeCollection;

  NodeCollection nodes_{*this};
  const ImageList* images_ = nullptr;
  int selected_ = 0;
};

}  // namespace torvane
