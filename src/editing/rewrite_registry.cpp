#include "editing/rewrite_registry.h"

#include "editing/prune.h"
#include "editing/survivors.h"
#include "editing/value_names.h"
#include "readers/list_stores.h"

// The list on the screen is the only copy of the survivors while the key is emptied and written
// anew; what it can't hold of a value (see survivors.h) never leaves the registry, or is read
// before.

namespace torvane {
namespace {

void DeleteValues(clsRegistry& registry, const std::vector<Text>& names) {
  for (const Text& name : names) {
    registry.ValueKey(name);
    registry.DeleteValue();
  }
}

std::vector<Text> ValueNames(const clsRegistry& registry) {
  std::vector<Text> names;
  std::int32_t count = 0;
  registry.EnumerateValues(names, count);
  return names;
}

void WriteRegistryEntries(const MruEntry& entry, List& list, clsRegistry& registry) {
  registry.ValueType(kTextType);
  const Text nameForm = entry.ValuePrefix + entry.FirstIndex;
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    ListItem& item = list.ListItems()(n);
    item.Key(EntryValueName(nameForm, n));
    registry.ValueKey(item.Key());
    registry.Value(EntryValueText(entry.ListType, item));
  }
}

void WriteCountValue(const MruEntry& entry, const List& list, clsRegistry& registry) {
  if (entry.CountValue == kNone) return;
  const std::int32_t count = list.ListItems().Count();
  registry.ValueKey(entry.CountValue);
  if (entry.CountKind == u"D") {
    registry.ValueType(kNumberType);
    registry.Value(count);
  } else if (entry.CountKind == u"S") {
    registry.ValueType(kTextType);
    registry.Value(Decimal(count));
  }
}

// The common way: the key is emptied, the survivors come back as texts under numbered names.
void Renumber(const MruEntry& entry, List& list, clsRegistry& registry) {
  DeleteValues(registry, ValueNames(registry));
  WriteRegistryEntries(entry, list, registry);
  WriteCountValue(entry, list, registry);
}

// Lists whose values have no numbers: the survivors stay where they are, the others go.
void KeepInPlace(const MruEntry& entry, List& list, clsRegistry& registry) {
  DeleteValues(registry, NamesNotIn(list, ValueNames(registry)));
  WriteCountValue(entry, list, registry);
}

// The Run list: the survivors come back as they were stored, under letters.
void Reletter(const MruEntry& entry, List& list, clsRegistry& registry) {
  const RunList survivors = ReadRunList(entry, list, registry);
  DeleteValues(registry, ValueNames(registry));
  WriteRunList(entry, survivors, list, registry);
}

using Rewriter = void (*)(const MruEntry& entry, List& list, clsRegistry& registry);

Rewriter RewriterFor(const Text& listType) {
  if (listType == u"5" || listType == u"8") return KeepInPlace;
  if (listType == u"9") return Reletter;
  return Renumber;
}

void Rewrite(List& list, Prune prune) {
  const MruEntry entry = EntryFromItemTag(list.ListItems()(1).Tag());
  prune(list);

  clsRegistry registry;
  registry.ClassKey(kCurrentUser);
  registry.SectionKey(ListKeyPath(entry));
  RewriterFor(entry.ListType)(entry, list, registry);
}

}  // namespace

void DeleteMissingFromRegistry(List& list) {
  Rewrite(list, PruneMissing);
}

void DeleteSelectedFromRegistry(List& list) {
  Rewrite(list, PruneSelected);
}

void DeleteAllFromRegistry(List& list) {
  Rewrite(list, PruneAll);
  ResetCounters();
}

}  // namespace torvane
