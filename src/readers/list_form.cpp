#include "readers/list_form.h"

#include "readers/icon_paths.h"

namespace torvane {

void PrepareList(const ListForm& form, List& list) {
  ResetCounters();
  for (const TextView column : form.columns) list.ColumnHeaders().Add(Text(column));
}

void FillList(const ListForm& form, const MruEntry& entry, List& list, ListStore& store) {
  PrepareList(form, list);
  const std::vector<Text> names = store.Names();
  if (form.counts == CountRule::Names) {
    Counters().TotalCount = static_cast<std::int32_t>(names.size());
  }
  const Text foundTag = ItemTag(false, entry);
  const Text missingTag = ItemTag(true, entry);
  for (const Text& name : names) {
    const StoredEntry stored{name, store.Value(name)};
    if (form.passesOver(entry, stored)) continue;
    if (form.counts == CountRule::Entries) ++Counters().TotalCount;

    const ShownEntry shown = form.shows(stored);
    if (shown.missing) ++Counters().MissingCount;
    AddListEntry(list, shown.kind, shown.iconPath, shown.text1, shown.text2,
                 shown.missing ? missingTag : foundTag, shown.text3);
    list.ListItems()(list.ListItems().Count()).Key(name);
  }
}

bool PassNothing(const MruEntry& /*list*/, const StoredEntry& /*stored*/) {
  return false;
}

bool PassEmpty(const MruEntry& /*list*/, const StoredEntry& stored) {
  return Length(stored.value) == 0;
}

bool PassEmptyOrCount(const MruEntry& list, const StoredEntry& stored) {
  return Length(stored.value) == 0 || stored.name == list.CountValue;
}

bool PassCount(const MruEntry& list, const StoredEntry& stored) {
  return stored.name == list.CountValue;
}

ShownEntry FileEntry(int kind, const EntryPath& path) {
  const bool found = FileExists(path.fullPath);
  return {.kind = kind,
          .iconPath = found ? path.fullPath : Icons().IconMissingFile,
          .text1 = path.fileName,
          .text2 = path.folderPath,
          .missing = !found};
}

ShownEntry ShowFile(const StoredEntry& stored) {
  return FileEntry(0, SplitEntryPath(AsText(stored.value)));
}

ShownEntry FolderEntry(const Text& folder, bool found) {
  return {.kind = 3,
          .iconPath = found ? folder : Icons().IconMissingFile,
          .text1 = folder,
          .missing = !found};
}

}  // namespace torvane
