#include "spine/found_nodes.h"

#include <algorithm>

namespace torvane {
namespace {

// Numbers of the tree's images.
constexpr int kClosedFolder = 1;
constexpr int kProgram = 3;

bool IsSame(const FoundList& left, const FoundList& right) {
  const MruEntry& one = left.description.entry;
  const MruEntry& other = right.description.entry;
  return left.key == right.key && one.EntryName == other.EntryName &&
         NodeTag(one) == NodeTag(other);
}

}  // namespace

const FoundList* FoundNodes::ListOf(const Node& node) const {
  if (!Has(node) || node.Index() == first_) return nullptr;
  return &lists_[static_cast<std::size_t>(node.Index() - first_ - 1)];
}

bool FoundNodes::AreOthers(std::vector<FoundList>& lists, const UndoStore& undo) const {
  const std::size_t found = lists.size();
  for (const FoundList& before : lists_) {
    const bool isFound = std::any_of(lists.begin(), lists.end(), [&](const FoundList& list) {
      return SameName(list.key, before.key);
    });
    const KeyStore store(before.description.place.location);
    if (!isFound && undo.Holds(store.Identity())) lists.push_back(before);
  }
  if (lists.size() > found) NameLists(lists);
  return !std::equal(lists.begin(), lists.end(), lists_.begin(), lists_.end(), IsSame);
}

Node* FoundNodes::Show(std::vector<FoundList> lists) {
  Node* const chosen = tree_.SelectedItem();
  const bool wasChosen = chosen && Has(*chosen);
  const FoundList* const shown = wasChosen ? ListOf(*chosen) : nullptr;
  const Text key = shown ? shown->key : Text();
  const bool wasExpanded = count_ > 0 && tree_.Nodes()(first_).Expanded();
  if (count_ > 0) tree_.Nodes().RemoveFrom(first_);
  lists_ = std::move(lists);
  Add();
  if (count_ == 0) return wasChosen ? &tree_.Nodes()(1) : nullptr;
  Node& category = tree_.Nodes()(first_);
  if (wasExpanded) category.Expanded(true);
  if (!wasChosen) return nullptr;
  const auto same = std::find_if(lists_.begin(), lists_.end(),
                                 [&](const FoundList& list) { return SameName(list.key, key); });
  const auto place = static_cast<int>(same - lists_.begin());
  Node& now = same == lists_.end() ? category : tree_.Nodes()(first_ + 1 + place);
  tree_.SelectedItem(now);
  return shown && same == lists_.end() ? &category : nullptr;
}

void FoundNodes::Add() {
  count_ = 0;
  if (lists_.empty()) return;
  NodeCollection& nodes = tree_.Nodes();
  Node& category = nodes.Add(nullptr, NodeRelationship::None, Text(kFoundCategory), kClosedFolder);
  first_ = category.Index();
  for (const FoundList& list : lists_) {
    const MruEntry& entry = list.description.entry;
    Node& node = nodes.Add(&category, NodeRelationship::Child, entry.EntryName, kProgram);
    // A key's name may hold what separates fields: all that is read of the tag is that no program
    // is known that opens the entries.
    node.Tag(Text(kNone));
    node.Tip(list.Tip());
  }
  count_ = static_cast<int>(lists_.size()) + 1;
}

}  // namespace torvane
