// The lists that stand in the tree behind the catalogue's: the user's own, and those found.

#include "finding/known_lists.h"
#include "spine/frmMain.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

// Numbers of the tree's images.
constexpr int kClosedFolder = 1;
constexpr int kProgram = 3;

// The window answers within 8 ms; the last key of a slice may take some of that.
constexpr std::chrono::milliseconds kSlice{6};

}  // namespace

void frmMain::LoadOwnLists() {
  const OwnLists own = ReadOwnLists();
  leftOut_ = LeftOutMessage(own);
  knownRows_ = CatalogueRows();
  knownRows_.insert(knownRows_.end(), own.rows.begin(), own.rows.end());
  Node* category = nullptr;
  for (const CategoryRow& row : own.rows) {
    NodeCollection& nodes = tvwMRU.Nodes();
    if (!category || !SameName(category->Text(), row.category)) {
      category = &nodes.Add(nullptr, NodeRelationship::None, row.category, kClosedFolder);
    }
    nodes.Add(category, NodeRelationship::Child, row.entry.EntryName, kProgram)
        .Tag(NodeTag(row.entry));
  }
}

void frmMain::TellLeftOutRows() {
  if (leftOut_.empty()) return;
  CurrentToolkit().ShowMessage(std::exchange(leftOut_, {}), MB_OK | MB_ICONEXCLAMATION,
                               ApplicationTitle());
}

void frmMain::FindLists() {
  const bool isLooking = finder_ != nullptr;
  finder_ = std::make_shared<ListFinder>(KeysOfRows(knownRows_));
  if (!isLooking) FindMore();
}

void frmMain::FindMore() {
  CurrentToolkit().WhenIdle([this, waits = std::weak_ptr<bool>(dimming_)] {
    if (waits.expired() || !Loaded()) return;
    if (!finder_->Look(kSlice)) return FindMore();
    auto lists = std::move(*std::exchange(finder_, nullptr)).Lists();
    if (!found_.AreOthers(lists, undo_)) return;
    turns_.take([this, lists = std::move(lists)]() mutable { ShowFound(std::move(lists)); });
  });
}

void frmMain::ShowFound(std::vector<FoundList> lists) {
  if (!found_.AreOthers(lists, undo_)) return;
  turns_.drop([this](const Node& node) { return found_.Has(node); });
  if (Node* instead = found_.Show(std::move(lists))) {
    tvwMRU.SelectedItem(*instead);
    turns_.choose(*instead);
  }
}

}  // namespace torvane
