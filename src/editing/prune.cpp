#include "editing/prune.h"

#include "readers/entry_list.h"

namespace torvane {

void PruneMissing(List& list) {
  Counters().DeletedCount +=
      list.ListItems().RemoveWhere([](const ListItem& item) { return IsMissing(item.Tag()); });
  Counters().MissingCount = 0;
}

void PruneSelected(List& list) {
  Counters().DeletedCount += list.ListItems().RemoveWhere([](const ListItem& item) {
    if (!item.Selected()) return false;
    if (IsMissing(item.Tag())) --Counters().MissingCount;
    return true;
  });
}

void PruneAll(List& list) {
  list.ListItems().Clear();
}

}  // namespace torvane
