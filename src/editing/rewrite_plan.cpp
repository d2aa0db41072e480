#include "editing/rewrite_plan.h"

#include <algorithm>

#include "editing/survivor.h"
#include "platform/extras.h"
#include "storage/clsRegistry.h"
#include "storage/file_lookups.h"
#include "storage/names.h"
#include "storage/raised_error.h"

namespace torvane {
namespace {

constexpr std::int32_t kNameErrorNumber = 26003;

[[noreturn]] void RefuseNames(const MruEntry& entry) {
  throw RaisedError(kNameErrorNumber, ExecutableBaseName(),
                    u"Torvane doesn't know how the values of this list are to be named (prefix '" +
                        entry.ValuePrefix + u"', first number '" + entry.FirstIndex +
                        u"'). Nothing has been changed.");
}

// The rows of a list, by the places of their values.
struct Rows {
  std::vector<const ListItem*> kept;
  std::vector<bool> isShown;
  std::vector<bool> isDoomed;
};

Rows SortRows(const ShownList& shown, const List& list, const std::vector<bool>& goes) {
  const std::size_t count = shown.picture->values.size();
  Rows rows{{}, std::vector<bool>(count), std::vector<bool>(count)};
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    const ListItem& item = list.ListItems()(n);
    rows.isShown[item.Number()] = true;
    if (goes[static_cast<std::size_t>(n - 1)]) {
      rows.isDoomed[item.Number()] = true;
    } else {
      rows.kept.push_back(&item);
    }
  }
  return rows;
}

// Lists whose values have names of their own: those that stay aren't touched.
RewritePlan PlanUnchosen(const ShownList& shown, const Rows& rows) {
  RewritePlan plan;
  const auto& values = shown.picture->values;
  for (std::size_t place = 0; place < values.size(); ++place) {
    if (!rows.isDoomed[place]) plan.after.values.push_back(values[place]);
  }
  for (const ListItem* item : rows.kept) plan.names.push_back(values[item->Number()].name);
  return plan;
}

void NameSurvivors(const ListDescription& description, const Rows& rows, RewritePlan& plan) {
  plan.names = description.names.First(rows.kept.size());
  if (plan.names.size() < rows.kept.size()) RefuseNames(description.entry);
}

void WriteSurvivors(const ShownList& shown, const Rows& rows, RewritePlan& plan) {
  for (std::size_t n = 0; n < rows.kept.size(); ++n) {
    plan.after.values.push_back(SurvivingValue(shown, *rows.kept[n], plan.names[n]));
  }
}

void WriteCount(const ShownList& shown, const Rows& rows, RewritePlan& plan) {
  const MruEntry& entry = shown.description.entry;
  if (entry.CountValue == kNone) return;
  const auto count = static_cast<std::int32_t>(rows.kept.size());
  if (shown.description.names.kind == EntryNames::Kind::Letters) {
    const Text order = OrderOfUse(shown, rows.kept, plan.names);
    plan.after.values.push_back(shown.store->ValueFor(entry.CountValue, order));
  } else if (entry.CountKind == u"S") {
    plan.after.values.push_back(shown.store->ValueFor(entry.CountValue, Decimal(count)));
  } else if (entry.CountKind == u"D") {
    plan.after.values.push_back({entry.CountValue, kNumberType, BytesOfNumber(count)});
  }
}

// The common way: the key is emptied, the survivors come back under numbered names.
RewritePlan PlanKey(const ShownList& shown, const Rows& rows) {
  RewritePlan plan;
  NameSurvivors(shown.description, rows, plan);
  WriteSurvivors(shown, rows, plan);
  WriteCount(shown, rows, plan);
  return plan;
}

// Keys that hold more than the list: only its entries are renumbered, and its count follows.
RewritePlan PlanListed(const ShownList& shown, const Rows& rows) {
  RewritePlan plan;
  NameSurvivors(shown.description, rows, plan);
  const Text& countValue = shown.description.entry.CountValue;
  const auto count =
      countValue == kNone ? std::nullopt : NameIndex(*shown.picture).Find(countValue);
  const auto& values = shown.picture->values;
  for (std::size_t place = 0; place < values.size(); ++place) {
    if (!rows.isShown[place] && place != count) plan.after.values.push_back(values[place]);
  }
  WriteSurvivors(shown, rows, plan);
  if (count) WriteCount(shown, rows, plan);
  return plan;
}

// The places of the keys that a section's rewrite takes out: those with the numbers that the count
// of keys reaches, so that other keys stay.
std::vector<bool> NumberedPlaces(const ShownList& shown) {
  const EntryNames& names = shown.description.names;
  if (names.kind != EntryNames::Kind::Numbered) RefuseNames(shown.description.entry);
  const NameIndex index(*shown.picture);
  const auto count = static_cast<std::int64_t>(ListedNames(*shown.picture));
  const std::int64_t last = std::max(count, names.first + count - 1);
  const auto& values = shown.picture->values;
  std::vector<bool> places(values.size());
  for (std::int64_t n = 1; names.first + n - 1 <= last; ++n) {
    if (const auto place = index.Find(names.Numbered(n))) places[*place] = true;
  }
  // A line behind another of its name is read by nobody, and must not be when that one has gone.
  for (std::size_t place = 0; place < values.size(); ++place) {
    if (!places[place]) places[place] = places[index.Find(values[place].name).value_or(place)];
  }
  return places;
}

// Entries that no row shows and that would go with the others: those behind the end of a long
// section's listing, or behind a gap in its numbers. They follow the survivors as they are stored.
class HiddenEntries {
 public:
  HiddenEntries(const ShownList& shown, const Rows& rows, const RewritePlan& plan)
      : shown_(shown), rows_(rows), index_(*shown.picture) {
    for (const Text& name : plan.names) taken_.insert(name);
  }

  bool IsHidden(std::size_t place) const {
    const StoredValue& value = shown_.picture->values[place];
    return !rows_.isShown[place] && !value.bytes.empty() && index_.Find(value.name) == place;
  }
  void LeaveName(const Text& name) { taken_.insert(name); }
  void Keep(const StoredValue& value) { kept_.push_back(&value); }

  void Write(RewritePlan& plan) {
    auto n = static_cast<std::int64_t>(rows_.kept.size());
    for (const StoredValue* value : kept_) {
      Text name;
      do {
        name = shown_.description.names.Numbered(++n);
      } while (!taken_.insert(name).second);
      plan.after.values.push_back({name, value->type, value->bytes});
    }
  }

 private:
  const ShownList& shown_;
  const Rows& rows_;
  NameIndex index_;
  NameSet taken_;
  std::vector<const StoredValue*> kept_;
};

RewritePlan PlanSection(const ShownList& shown, const Rows& rows, Doomed doomed) {
  const auto& values = shown.picture->values;
  const bool isWhole = shown.description.removal == Removal::WholeSection;
  RewritePlan plan;
  if (isWhole) plan.clearing = Clearing::Whole;
  NameSurvivors(shown.description, rows, plan);
  const std::vector<bool> goes =
      isWhole ? std::vector<bool>(values.size(), true) : NumberedPlaces(shown);
  HiddenEntries hidden(shown, rows, plan);
  for (std::size_t place = 0; place < values.size(); ++place) {
    if (!goes[place]) {
      hidden.LeaveName(values[place].name);
      plan.after.values.push_back(values[place]);
    } else if (doomed != Doomed::All && hidden.IsHidden(place)) {
      hidden.Keep(values[place]);
    }
  }
  WriteSurvivors(shown, rows, plan);
  hidden.Write(plan);
  return plan;
}

// Two entries under one name would be one.
void RefuseEqualNames(const MruEntry& entry, const RewritePlan& plan) {
  NameSet names;
  for (const StoredValue& value : plan.after.values) {
    if (!names.insert(value.name).second) RefuseNames(entry);
  }
}

// An entry under the count's name would be overwritten by it. The entries' own names differ.
void RefuseNameOfCount(const MruEntry& entry, const RewritePlan& plan) {
  const auto isCount = [&](const Text& name) { return SameName(name, entry.CountValue); };
  if (std::any_of(plan.names.begin(), plan.names.end(), isCount)) RefuseNames(entry);
}

}  // namespace

RewritePlan PlanRewrite(const ShownList& shown, const List& list, const std::vector<bool>& goes,
                        Doomed doomed) {
  const FileLookups lookups;
  const Rows rows = SortRows(shown, list, goes);
  switch (shown.description.removal) {
    case Removal::Chosen:
      return PlanUnchosen(shown, rows);
    case Removal::Everything:
    case Removal::Listed: {
      const bool isAll = shown.description.removal == Removal::Everything;
      RewritePlan plan = isAll ? PlanKey(shown, rows) : PlanListed(shown, rows);
      (isAll ? RefuseNameOfCount : RefuseEqualNames)(shown.description.entry, plan);
      return plan;
    }
    default:
      return PlanSection(shown, rows, doomed);
  }
}

}  // namespace torvane
