#include "cli/open_list.h"

#include <algorithm>
#include <map>

#include "finding/office_lists.h"
#include "readers/ini_folders.h"
#include "storage/names.h"
#include "storage/paths.h"

namespace torvane {
namespace {

// The entry in one piece: the path where the columns have its two parts.
Text WholeText(const List& list, const ListItem& item) {
  for (int column = 2; column <= list.ColumnHeaders().Count(); ++column) {
    if (list.ColumnHeaders()(column) != u"File Path") continue;
    // A bare name may show this as its folder.
    return item.SubItems(column - 1) == u"\\" ? item.Text() : FileText(item, column - 1);
  }
  return item.Text();
}

bool KnowsFolder(const MruEntry& entry) {
  clsRegistry registry;
  SelectIniFolder(registry, entry.EntryName);
  return Length(registry.Value()) != 0;
}

}  // namespace

std::vector<NamedList> NamedLists(const OwnLists& own) {
  std::vector<NamedList> lists;
  NameSet taken;
  for (KnownList& known : AllLists(own)) {
    const Text plain = known.category + u"/" + known.description.entry.EntryName;
    Text name = plain;
    for (int time = 2; !taken.insert(name).second; ++time)
      name = plain + u" (" + Decimal(time) + u")";
    lists.push_back({std::move(name), std::move(known)});
  }
  return lists;
}

OpenList::OpenList(const NamedList& named, TextView iniFolder) : named_(&named) {
  const ListDescription& description = named.known.description;
  // To ask for the folder would make a place to keep the answer in.
  const bool isAsked = description.place.kind == ListPlace::Kind::AskedFile;
  if (isAsked && iniFolder.empty() && !KnowsFolder(description.entry)) return;
  FillList(description, list_);
  Describe();
}

void OpenList::ReadAnew() {
  FillListAgain(list_);
  Describe();
}

void OpenList::Describe() {
  entries_.clear();
  const ShownList* shown = Shown();
  const bool isOffice = named_->known.description.form == &kOfficeForm;
  for (int n = 1; n <= list_.ListItems().Count(); ++n) {
    const ListItem& item = list_.ListItems()(n);
    Entry entry{.text = WholeText(list_, item), .columns = {item.Text()}};
    for (int column = 1; column < list_.ColumnHeaders().Count(); ++column) {
      entry.columns.push_back(item.SubItems(column));
    }
    entry.isUnreachable = SaysUnreachable(item.ImageNote());
    entry.isMissing = IsMissing(item.Tag()) && !entry.isUnreachable;
    if (isOffice && shown) {
      const StoredValue& stored = shown->picture->values[item.Number()];
      const auto office = ReadOfficeItem(AsText(shown->store->ValueOf(stored)));
      entry.isPinned = office && office->isPinned;
    }
    entries_.push_back(std::move(entry));
  }
}

std::int64_t OpenList::MissingCount() const {
  return std::ranges::count_if(entries_, &Entry::isMissing);
}

}  // namespace torvane
