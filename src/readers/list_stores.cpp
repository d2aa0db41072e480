#include "readers/list_stores.h"

namespace torvane {

Text ListKeyPath(const MruEntry& entry) {
  return u"software\\" + entry.Location;
}

RegistryListStore::RegistryListStore(const MruEntry& entry) {
  registry_.ClassKey(kCurrentUser);
  registry_.SectionKey(ListKeyPath(entry));
}

std::vector<Text> RegistryListStore::Names() {
  std::vector<Text> names;
  std::int32_t count = 0;
  registry_.EnumerateValues(names, count);
  return names;
}

Variant RegistryListStore::Value(const Text& name) {
  registry_.ValueKey(name);
  return registry_.Value();
}

void FillRegistryForm(const ListForm& form, const MruEntry& entry, List& list) {
  RegistryListStore store(entry);
  FillList(form, entry, list, store);
}

IniListStore::IniListStore(const MruEntry& entry, const Text& path) {
  ini_.Path(path);
  ini_.Section(entry.Section);
}

std::vector<Text> IniListStore::Names() {
  std::vector<Text> names;
  std::int32_t count = 0;
  ini_.EnumerateCurrentSection(names, count);
  return names;
}

Variant IniListStore::Value(const Text& name) {
  ini_.Key(name);
  return ini_.Value();
}

NumberedIniListStore::NumberedIniListStore(const MruEntry& entry, const Text& path)
    : IniListStore(entry, path), prefix_(entry.ValuePrefix) {}

std::vector<Text> NumberedIniListStore::Names() {
  std::vector<Text> names = IniListStore::Names();
  std::int64_t number = 0;
  for (Text& name : names) name = prefix_ + Decimal(number++);
  return names;
}

}  // namespace torvane
