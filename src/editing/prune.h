// What a delete command takes off the list on the screen, before the list's store is rewritten.
#pragma once

#include "windows/controls/list.h"

namespace torvane {

/// Takes entries off the list and keeps the counters in step.
using Prune = void (*)(List& list);

void PruneMissing(List& list);
void PruneSelected(List& list);
void PruneAll(List& list);

}  // namespace torvane
