// The values of a store by their names.
#pragma once

#include <map>
#include <optional>
#include <set>

#include "storage/value_store.h"

namespace torvane {

/// Names of one store; two that the system takes for one are one here.
using NameSet = std::set<Text, NameOrder>;

/// The places of a picture's values by their names; the first of equal names counts. The picture
/// must outlive it.
class NameIndex {
 public:
  explicit NameIndex(const StorePicture& picture) {
    for (std::size_t place = 0; place < picture.values.size(); ++place) {
      places_.emplace(picture.values[place].name, place);
    }
  }
  std::optional<std::size_t> Find(TextView name) const {
    const auto found = places_.find(name);
    if (found == places_.end()) return std::nullopt;
    return found->second;
  }

 private:
  std::map<TextView, std::size_t, NameOrder> places_;
};

}  // namespace torvane
