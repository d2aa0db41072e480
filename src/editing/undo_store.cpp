#include "editing/undo_store.h"

#include <algorithm>

namespace torvane {
namespace {

constexpr std::size_t kMostBytes = std::size_t{64} << 20U;

// What one command left is mostly what the next one began with, and is counted twice then.
std::size_t BytesOf(const Deletion& deletion) {
  std::size_t size = SizeOf(*deletion.before) + SizeOf(*deletion.after);
  for (const Text& name : deletion.gone) size += sizeof(Text) + name.size() * sizeof(char16_t);
  return size;
}

}  // namespace

void UndoStore::Push(Deletion deletion) {
  if (deletion.gone.empty() && deletion.before->values == deletion.after->values) return;
  size_ += BytesOf(deletion);
  deletions_.push_back(std::move(deletion));
  while (size_ > kMostBytes) {
    size_ -= BytesOf(deletions_.front());
    deletions_.pop_front();
  }
}

const Deletion* UndoStore::LastOf(const List& list) const {
  const ShownList* shown = ShownIn(list);
  return shown ? LastIn(shown->store->Identity()) : nullptr;
}

const Deletion* UndoStore::LastIn(const Text& store) const {
  const auto last = std::find_if(deletions_.rbegin(), deletions_.rend(),
                                 [&](const Deletion& deletion) { return deletion.store == store; });
  return last == deletions_.rend() ? nullptr : &*last;
}

void UndoStore::Remove(const Deletion* deletion) {
  const auto place =
      std::find_if(deletions_.begin(), deletions_.end(),
                   [&](const Deletion& candidate) { return &candidate == deletion; });
  if (place == deletions_.end()) return;
  size_ -= BytesOf(*place);
  deletions_.erase(place);
}

}  // namespace torvane
