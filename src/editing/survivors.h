// What a list doesn't show of its surviving values, and how it is kept through a rewrite: the data
// behind value names, the type of a command, the order in which commands were used.
#pragma once

#include <optional>
#include <vector>

#include "readers/MruEntry.h"
#include "storage/clsRegistry.h"
#include "windows/controls/list.h"

namespace torvane {

/// Those of `names` under which no item of the list is stored.
std::vector<Text> NamesNotIn(const List& list, std::vector<Text> names);

/// The surviving commands of the Run list as they were stored.
struct RunList {
  /// The stored value of each item, in list order; nothing where it can't be found any more.
  std::vector<std::optional<StoredBytes>> values;
  /// List places from 1, the command used last first.
  std::vector<int> byRecency;
};

/// Reads the values of the items that are left, and the order that CountValue ("MRUList") gives.
RunList ReadRunList(const MruEntry& entry, const List& list, clsRegistry& registry);

/// Writes the survivors under A, B, C and on, and their order under CountValue in small letters.
void WriteRunList(const MruEntry& entry, const RunList& survivors, List& list,
                  clsRegistry& registry);

}  // namespace torvane
