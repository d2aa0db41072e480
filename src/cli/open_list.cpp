#include "cli/open_list.h"

#include <algorithm>
#include <map>

#include "finding/office_lists.h"
#include "platform/console.h"
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

// The drive or the share that a path is on; empty for a text that is on none.
Text RootOf(TextView path) {
  if (path.size() > 2 && path.substr(1, 2) == u":\\") return Text(path.substr(0, 3));
  if (!path.starts_with(u"\\\\")) return {};
  const auto server = path.find(u'\\', 2);
  if (server == TextView::npos) return Text(path);
  return Text(path.substr(0, path.find(u'\\', server + 1)));
}

// A server that doesn't answer takes its time: each is asked once.
bool IsRootThere(const Text& root) {
  static std::map<Text, bool, NameOrder> known;
  const auto found = known.find(root);
  if (found != known.end()) return found->second;
  return known[root] = IsRootReachable(AddBackslash(root));
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
    const bool isMissing = IsMissing(item.Tag());
    const Text root = RootOf(entry.text);
    entry.isUnreachable = item.ImageNote() == u"Can't be reached" ||
                          (isMissing && !root.empty() && !IsRootThere(root));
    entry.isMissing = isMissing && !entry.isUnreachable;
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
