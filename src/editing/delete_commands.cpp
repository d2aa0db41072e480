#include "editing/delete_commands.h"

#include "editing/rewrite_ini.h"
#include "editing/rewrite_registry.h"
#include "readers/entry_list.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

using Engine = void (*)(List& list);

struct DeleteCommand {
  Engine registryEngine;
  Engine iniEngine;
  bool tellsRestart;
};

constexpr DeleteCommand kSelected{DeleteSelectedFromRegistry, DeleteSelectedFromIni, true};
constexpr DeleteCommand kMissing{DeleteMissingFromRegistry, DeleteMissingFromIni, false};
constexpr DeleteCommand kAll{DeleteAllFromRegistry, DeleteAllFromIni, true};

// The shell reads the Run list when it starts, and writes it when it ends.
bool NeedsRestart(Tree& tree) {
  const Node* node = tree.SelectedItem();
  return node && node->Text() == u"Run";
}

void Run(const DeleteCommand& command, const DeleteContext& context) {
  const MruEntry entry = EntryFromItemTag(context.list.ListItems()(1).Tag());
  const Engine engine = IsIniList(entry.ListType) ? command.iniEngine : command.registryEngine;
  {
    const Hourglass hourglass(context.list.Parent());
    engine(context.list);
  }

  const ListCounters& counters = Counters();
  context.status.Panels(2).Text(u"Total: " + Decimal(counters.TotalCount - counters.DeletedCount));
  context.status.Panels(3).Text(u"Missing: " + Decimal(counters.MissingCount));
  if (command.tellsRestart && NeedsRestart(context.tree)) {
    CurrentToolkit().ShowMessage(u"You must restart for the changes to take effect.",
                                 MB_OK | MB_ICONEXCLAMATION, ApplicationTitle());
  }
}

}  // namespace

void DeleteSelectedEntries(const DeleteContext& context) {
  Run(kSelected, context);
}

void DeleteMissingEntries(const DeleteContext& context) {
  Run(kMissing, context);
}

void DeleteAllEntries(const DeleteContext& context) {
  Run(kAll, context);
}

}  // namespace torvane
