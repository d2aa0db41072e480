// Which nodes of the tree have no list behind them.

#include <vector>

#include "readers/has_entries.h"
#include "spine/frmMain.h"
#include "windows/controls/toolkit.h"

namespace torvane {

// A category is dimmed when all in it are. What was found has entries.
void frmMain::DimTree() {
  NodeCollection& nodes = tvwMRU.Nodes();
  std::vector<bool> hasEntries(static_cast<std::size_t>(nodes.Count()) + 1);
  for (int index = 1; index <= nodes.Count(); ++index) {
    const Node& node = nodes(index);
    if (!node.Parent()) continue;
    if (!found_.Has(node) && !HasEntries(EntryFromNode(node.Text(), node.Tag()))) continue;
    hasEntries[static_cast<std::size_t>(index)] = true;
    hasEntries[static_cast<std::size_t>(node.Parent()->Index())] = true;
  }
  for (int index = 1; index <= nodes.Count(); ++index) {
    nodes(index).Dimmed(!hasEntries[static_cast<std::size_t>(index)]);
  }
}

void frmMain::LookForLists() {
  if (!Loaded() || std::exchange(*dimming_, true)) return;
  CurrentToolkit().WhenIdle([this, waits = std::weak_ptr<bool>(dimming_)] {
    if (waits.expired()) return;
    *dimming_ = false;
    if (Loaded()) DimTree();
  });
}

}  // namespace torvane
