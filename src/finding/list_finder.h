// Looks for lists below HKEY_CURRENT_USER\Software, a little at a time.
#pragma once

#include <chrono>
#include <memory>

#include "finding/found_list.h"
#include "platform/key_walk.h"
#include "storage/names.h"

namespace torvane {

/// One walk over all keys. It only reads.
class ListFinder {
 public:
  /// `known` are the keys, from what stands behind "Software\" on, that are shown already.
  explicit ListFinder(NameSet known);

  /// Looks on for about so long, and gives whether all keys have been looked at.
  bool Look(std::chrono::steady_clock::duration time);
  /// The lists that have been found, with their names and in the order of these.
  std::vector<FoundList> Lists() &&;

 private:
  void Examine();

  NameSet known_;
  std::unique_ptr<KeyWalk> walk_;
  WalkedKey key_;  ///< the one in hand
  std::vector<FoundList> lists_;
};

}  // namespace torvane
