// The stores that lists are read from.
#pragma once

#include "readers/list_form.h"
#include "storage/clsIni.h"
#include "storage/clsRegistry.h"

namespace torvane {

/// The path of a list's registry key below HKEY_CURRENT_USER.
Text ListKeyPath(const MruEntry& entry);

/// The values of a list's registry key.
class RegistryListStore : public ListStore {
 public:
  explicit RegistryListStore(const MruEntry& entry);
  std::vector<Text> Names() override;
  Variant Value(const Text& name) override;

 private:
  clsRegistry registry_;
};

/// FillList from the registry key of the list.
void FillRegistryForm(const ListForm& form, const MruEntry& entry, List& list);

/// The keys of a list's section in the INI file at `path`.
class IniListStore : public ListStore {
 public:
  IniListStore(const MruEntry& entry, const Text& path);
  std::vector<Text> Names() override;
  Variant Value(const Text& name) override;

 private:
  clsIni ini_;
};

/// The same section, its keys tried by number: as many as the section has, from 0.
class NumberedIniListStore : public IniListStore {
 public:
  NumberedIniListStore(const MruEntry& entry, const Text& path);
  std::vector<Text> Names() override;

 private:
  Text prefix_;
};

}  // namespace torvane
