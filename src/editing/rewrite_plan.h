// What a list's store is to hold once entries have gone: worked out before anything is changed.
#pragma once

#include <vector>

#include "readers/list_description.h"

namespace torvane {

/// Which entries of a list a command takes.
enum class Doomed { Selected, Missing, All };

/// The outcome of a command.
struct RewritePlan {
  StorePicture after;
  Clearing clearing = Clearing::EachValue;
  std::vector<Text> names;  ///< of the values of the items that stay, in list order
};

/// Plans the rewrite of a list whose items with a true in `goes` (from item 1 on) go. A survivor is
/// written as its columns say where that reads as it did, else as it is stored. Throws RaisedError
/// where the survivors can't be named.
RewritePlan PlanRewrite(const ShownList& shown, const List& list, const std::vector<bool>& goes,
                        Doomed doomed);

}  // namespace torvane
