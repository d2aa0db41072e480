#include "editing/delete_commands.h"

#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

struct DeleteCommand {
  Doomed doomed;
  bool tellsRestart;
};

constexpr DeleteCommand kSelected{Doomed::Selected, true};
constexpr DeleteCommand kMissing{Doomed::Missing, false};
constexpr DeleteCommand kAll{Doomed::All, true};

// The shell reads the Run list when it starts, and writes it when it ends.
bool NeedsRestart(Tree& tree) {
  const Node* node = tree.SelectedItem();
  return node && node->Text() == u"Run";
}

void ShowCounters(const DeleteContext& context) {
  const ListCounters& counters = Counters();
  context.status.Panels(2).Text(u"Total: " + Decimal(counters.TotalCount - counters.DeletedCount));
  context.status.Panels(3).Text(u"Missing: " + Decimal(counters.MissingCount));
  ShowUndoHint(context);
}

void ShowAnew(const DeleteContext& context) {
  try {
    FillListAgain(context.list);
  } catch (const RaisedError&) {
    ShowCounters(context);
    throw;
  }
  ShowCounters(context);
}

// Where an error couldn't put everything back, the rows are no longer what is stored.
void ShowAnewIfChanged(const DeleteContext& context) {
  const ShownList* shown = ShownIn(context.list);
  if (shown && !SameContent(shown->store->Read(), *shown->picture)) ShowAnew(context);
}

// Runs a change of the list. False where it was refused because another program has changed the
// list.
template <class Change>
bool Run(const DeleteContext& context, const Change& change) {
  try {
    const Hourglass hourglass(context.list.Parent());
    change();
  } catch (const ListHasChanged& changed) {
    ShowAnew(context);
    CurrentToolkit().ShowMessage(changed.Description(), MB_OK | MB_ICONEXCLAMATION,
                                 ApplicationTitle());
    return false;
  } catch (const RaisedError&) {
    ShowAnewIfChanged(context);
    throw;
  }
  ShowCounters(context);
  return true;
}

void Delete(const DeleteCommand& command, const DeleteContext& context) {
  if (!ShownIn(context.list)) return;
  const bool done =
      Run(context, [&] { context.undo.Push(DeleteEntries(context.list, command.doomed)); });
  if (done && command.tellsRestart && NeedsRestart(context.tree)) {
    CurrentToolkit().ShowMessage(u"You must restart for the changes to take effect.",
                                 MB_OK | MB_ICONEXCLAMATION, ApplicationTitle());
  }
}

}  // namespace

void DeleteSelectedEntries(const DeleteContext& context) {
  Delete(kSelected, context);
}

void DeleteMissingEntries(const DeleteContext& context) {
  Delete(kMissing, context);
}

void DeleteAllEntries(const DeleteContext& context) {
  Delete(kAll, context);
}

void UndoDelete(const DeleteContext& context) {
  const Deletion* last = context.undo.LastOf(context.list);
  if (!last) return;
  Run(context, [&] {
    PutBackEntries(context.list, *last);
    context.undo.Remove(last);
  });
}

void ShowUndoHint(const DeleteContext& context) {
  const Text hint = context.undo.LastOf(context.list) ? u"Ctrl+Z takes it back" : u"";
  context.list.Hint(hint);
  context.status.Hint(hint);
}

}  // namespace torvane
