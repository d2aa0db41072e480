#include "readers/has_entries.h"

#include "readers/ini_folders.h"
#include "readers/list_description.h"
#include "storage/clsIni.h"
#include "storage/paths.h"

namespace torvane {
namespace {

bool KeyHasEntries(const ListDescription& list) {
  const KeyStore store(list.place.location);
  return store.Any([&](const StoredValue& stored) {
    return !list.form->passesOver(list.entry, {stored.name, store.ValueOf(stored)});
  });
}

// As many names as a section's listing has room for are few.
bool SectionHasEntries(const ListDescription& list, const Text& folder) {
  clsIni ini;
  ini.Path(folder + list.place.location);
  ini.Section(list.place.section);
  std::vector<Text> names;
  std::int32_t count = 0;
  ini.EnumerateCurrentSection(names, count);
  for (std::int64_t n = 1; n <= count; ++n) {
    const bool byNumber = list.listing == Listing::Numbers;
    const Text name = byNumber ? list.names.Numbered(n) : names[static_cast<std::size_t>(n - 1)];
    ini.Key(name);
    if (!list.form->passesOver(list.entry, {name, ini.Value()})) return true;
  }
  return false;
}

}  // namespace

bool HasEntries(const MruEntry& row) {
  const ListType* type = FindListType(row.ListType);
  if (!type) return false;
  const ListDescription list = DescribeRow(row, *type);
  switch (list.place.kind) {
    case ListPlace::Kind::Key:
      return KeyHasEntries(list);
    case ListPlace::Kind::WindowsFile:
      return SectionHasEntries(list, AddBackslash(GetWindowsFolder()));
    case ListPlace::Kind::AskedFile:
      break;
  }
  clsRegistry folders;
  SelectIniFolder(folders, row.EntryName);
  const Text folder = AsText(folders.Value());
  return folder.empty() || SectionHasEntries(list, folder);
}

}  // namespace torvane
