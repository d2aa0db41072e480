// What the commands of a session did, for taking it back. In memory only, so that a program that
// removes traces leaves none.
#pragma once

#include <deque>

#include "editing/rewrite.h"

namespace torvane {

/// The deletions that can be taken back, of all lists together. When they take more than 64 MB, the
/// oldest go.
class UndoStore {
 public:
  /// Keeps a deletion, unless it changed nothing.
  void Push(Deletion deletion);
  /// The last deletion of the list on show; null for none.
  const Deletion* LastOf(const List& list) const;
  /// Whether there is a deletion of that store (ValueStore::Identity).
  bool Holds(const Text& store) const { return LastIn(store) != nullptr; }
  /// Lets go of a deletion that LastOf gave.
  void Remove(const Deletion* deletion);

 private:
  const Deletion* LastIn(const Text& store) const;

  std::deque<Deletion> deletions_;
  std::size_t size_ = 0;  ///< bytes that they take, about
};

}  // namespace torvane
