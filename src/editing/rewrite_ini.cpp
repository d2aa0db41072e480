#include "editing/rewrite_ini.h"

#include "editing/prune.h"
#include "editing/value_names.h"
#include "readers/entry_list.h"
#include "readers/ini_folders.h"
#include "storage/clsIni.h"

// The old keys go by number, not by name, so that other keys of the section stay.

namespace torvane {
namespace {

Text StoredFolder(const Text& entryName) {
  clsRegistry registry;
  SelectIniFolder(registry, entryName);
  return AsText(registry.Value());
}

Text IniPath(const MruEntry& entry) {
  if (entry.ListType == u"21") return StoredFolder(u"IrfanView") + entry.Location;
  if (entry.ListType == u"22") return StoredFolder(u"Resource Hacker") + entry.Location;
  return AddBackslash(GetWindowsFolder()) + entry.Location;
}

Text KeyName(const MruEntry& entry, std::int32_t number) {
  return entry.ValuePrefix + Decimal(number);
}

void RemoveOldKeys(const MruEntry& entry, std::int32_t first, clsIni& ini) {
  // This one list owns its section.
  if (entry.ListType == u"22") {
    ini.DeleteSection();
    return;
  }
  std::vector<Text> names;
  std::int32_t count = 0;
  ini.EnumerateCurrentSection(names, count);
  for (std::int32_t number = first; number <= count; ++number) {
    ini.Key(KeyName(entry, number));
    ini.DeleteKey();
  }
}

void WriteEntries(const MruEntry& entry, std::int32_t first, const List& list, clsIni& ini) {
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    ini.Key(KeyName(entry, first + n - 1));
    Text text = EntryValueText(entry.ListType, list.ListItems()(n));
    ini.Value(text);
  }
}

void Rewrite(List& list, Prune prune) {
  const MruEntry entry = EntryFromItemTag(list.ListItems()(1).Tag());
  prune(list);

  clsIni ini;
  ini.Path(IniPath(entry));
  ini.Section(entry.Section);
  const std::int32_t first = AsInteger(entry.FirstIndex);
  RemoveOldKeys(entry, first, ini);
  WriteEntries(entry, first, list, ini);
}

}  // namespace

void DeleteMissingFromIni(List& list) {
  Rewrite(list, PruneMissing);
}

void DeleteSelectedFromIni(List& list) {
  Rewrite(list, PruneSelected);
}

void DeleteAllFromIni(List& list) {
  Rewrite(list, PruneAll);
  ResetCounters();
}

}  // namespace torvane
