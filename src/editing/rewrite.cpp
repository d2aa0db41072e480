#include "editing/rewrite.h"

#include <algorithm>
#include <stdexcept>

#include "platform/extras.h"
#include "storage/names.h"

namespace torvane {
namespace {

constexpr std::int32_t kChangedErrorNumber = 26004;

ShownList& FilledFrom(const List& list) {
  ShownList* shown = ShownIn(list);
  if (!shown) throw std::logic_error("the list shows no store");
  return *shown;
}

bool Goes(const ListItem& item, Doomed doomed) {
  switch (doomed) {
    case Doomed::Selected:
      return item.Selected();
    case Doomed::Missing:
      return IsMissing(item.Tag());
    default:
      return true;
  }
}

std::vector<bool> RowsThatGo(const List& list, Doomed doomed) {
  std::vector<bool> goes;
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    goes.push_back(Goes(list.ListItems()(n), doomed));
  }
  return goes;
}

std::vector<Text> NamesThatGo(const ShownList& shown, const List& list,
                              const std::vector<bool>& goes) {
  std::vector<Text> names;
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    if (!goes[static_cast<std::size_t>(n - 1)]) continue;
    names.push_back(shown.picture->values[list.ListItems()(n).Number()].name);
  }
  return names;
}

// The list's rows stand for the values of those names in another picture from now on.
void Adopt(ShownList& shown, List& list, std::shared_ptr<const StorePicture> picture,
           const std::vector<Text>& names) {
  // Mostly the values stand in the order of the rows, and nothing has to be looked up.
  std::optional<NameIndex> index;
  for (std::size_t row = 0; row < names.size(); ++row) {
    std::size_t place = row;
    if (place >= picture->values.size() || picture->values[place].name != names[row]) {
      if (!index) index.emplace(*picture);
      place = index->Find(names[row]).value_or(0);
    }
    list.ListItems()(static_cast<int>(row) + 1).Number(place);
  }
  shown.picture = std::move(picture);
}

// What the store holds, which must be what the list shows.
void CheckStillShown(ShownList& shown, List& list) {
  StorePicture now = shown.store->Read();
  if (!SameContent(now, *shown.picture)) throw ListHasChanged();
  if (now.values == shown.picture->values) return;
  const std::vector<Text> names = NamesThatGo(
      shown, list, std::vector<bool>(static_cast<std::size_t>(list.ListItems().Count()), true));
  Adopt(shown, list, std::make_shared<const StorePicture>(std::move(now)), names);
}

void Prune(List& list, Doomed doomed, const std::vector<bool>& goes) {
  if (doomed == Doomed::All) {
    list.ListItems().Clear();
    ResetCounters();
    return;
  }
  ListCounters& counters = Counters();
  counters.DeletedCount += list.ListItems().RemoveWhere([&](const ListItem& item) {
    const bool isDoomed = goes[static_cast<std::size_t>(item.Index() - 1)];
    if (isDoomed && IsMissing(item.Tag())) --counters.MissingCount;
    return isDoomed;
  });
}

void SelectAndShow(List& list, const std::vector<Text>& names) {
  const ShownList& shown = FilledFrom(list);
  const NameSet cameBack(names.begin(), names.end());
  const ListItem* first = nullptr;
  for (int n = list.ListItems().Count(); n >= 1; --n) {
    ListItem& item = list.ListItems()(n);
    if (!cameBack.contains(shown.picture->values[item.Number()].name)) continue;
    item.Selected(true);
    if (!first) item.EnsureVisible();
    first = &item;
  }
  if (first) first->EnsureVisible();
}

}  // namespace

ListHasChanged::ListHasChanged()
    : RaisedError(kChangedErrorNumber, ExecutableBaseName(),
                  u"Another program has changed this list since it was read. Nothing has been "
                  u"written.") {}

Deletion DeleteEntries(List& list, Doomed doomed) {
  ShownList& shown = FilledFrom(list);
  CheckStillShown(shown, list);
  const std::vector<bool> goes = RowsThatGo(list, doomed);
  const RewritePlan plan = PlanRewrite(shown, list, goes, doomed);
  Deletion deletion{shown.store->Identity(), shown.picture, nullptr, plan.clearing,
                    NamesThatGo(shown, list, goes)};
  deletion.after = std::make_shared<const StorePicture>(
      shown.store->Replace(*shown.picture, plan.after, plan.clearing));
  Prune(list, doomed, goes);
  Adopt(shown, list, deletion.after, plan.names);
  return deletion;
}

void PutBackEntries(List& list, const Deletion& deletion) {
  ShownList& shown = FilledFrom(list);
  const StorePicture now = shown.store->Read();
  if (!SameContent(now, *deletion.after)) throw ListHasChanged();
  shown.store->Replace(now, *deletion.before, deletion.clearing);
  FillListAgain(list);
  SelectAndShow(list, deletion.gone);
}

}  // namespace torvane
