#include "editing/survivors.h"

#include <algorithm>
#include <set>

#include "editing/value_names.h"

namespace torvane {
namespace {

// Value names compare without case.
bool SameName(const Text& left, const Text& right) {
  return LowerCase(left) == LowerCase(right);
}

// The list place of the item stored under a name, 0 for none.
int PlaceOf(const List& list, const Text& name) {
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    if (SameName(list.ListItems()(n).Key(), name)) return n;
  }
  return 0;
}

std::vector<int> Recency(const List& list, const Text& order) {
  std::vector<int> places;
  std::set<int> seen;
  for (const char16_t letter : order) {
    const int place = PlaceOf(list, Text(1, letter));
    if (place != 0 && seen.insert(place).second) places.push_back(place);
  }
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    if (seen.insert(n).second) places.push_back(n);
  }
  return places;
}

}  // namespace

std::vector<Text> NamesNotIn(const List& list, std::vector<Text> names) {
  std::set<Text> kept;
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    kept.insert(LowerCase(list.ListItems()(n).Key()));
  }
  std::erase_if(names, [&](const Text& name) { return kept.contains(LowerCase(name)); });
  return names;
}

RunList ReadRunList(const MruEntry& entry, const List& list, clsRegistry& registry) {
  RunList survivors;
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    registry.ValueKey(list.ListItems()(n).Key());
    survivors.values.push_back(registry.Stored());
  }
  registry.ValueKey(entry.CountValue);
  survivors.byRecency = Recency(list, AsText(registry.Value()));
  return survivors;
}

void WriteRunList(const MruEntry& entry, const RunList& survivors, List& list,
                  clsRegistry& registry) {
  const Text nameForm = entry.ValuePrefix + entry.FirstIndex;
  registry.ValueType(kTextType);
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    ListItem& item = list.ListItems()(n);
    item.Key(EntryValueName(nameForm, n));
    registry.ValueKey(item.Key());
    if (const auto& stored = survivors.values[static_cast<std::size_t>(n - 1)]) {
      registry.Stored(*stored);
    } else {
      registry.Value(item.Text() + u"\\1");
    }
  }
  Text order;
  for (const int place : survivors.byRecency) order += EntryValueName(nameForm, place);
  registry.ValueKey(entry.CountValue);
  registry.ValueType(kTextType);
  registry.Value(LowerCase(order));
}

}  // namespace torvane
