// The catalogue's way into the tree: a category a section, a program a row.

#include "platform/winapi.h"
#include "readers/MruEntry.h"
#include "spine/basMain.h"
#include "storage/clsIni.h"

namespace torvane {
namespace {

// Numbers of the tree's images.
constexpr int kClosedFolder = 1;
constexpr int kProgram = 3;

std::vector<Text> Rows(const clsIni& ini) {
  std::vector<Text> keys;
  std::int32_t count = 0;
  ini.EnumerateCurrentSection(keys, count);
  return keys;
}

void AddCategory(Tree& tree, clsIni& ini, const Text& section) {
  ini.Section(section);
  Node& category = tree.Nodes().Add(nullptr, NodeRelationship::None, section, kClosedFolder);
  for (const Text& key : Rows(ini)) {
    ini.Key(key);
    const MruEntry entry = EntryFromRow(ini.Value());
    tree.Nodes()
        .Add(&category, NodeRelationship::Child, entry.EntryName, kProgram)
        .Tag(NodeTag(entry));
  }
}

}  // namespace

void LoadCatalogue(Tree& tree, const LoadProgress& progress) {
  clsIni ini;
  ini.Path(CatalogueFile());
  std::vector<Text> sections;
  std::int32_t count = 0;
  ini.EnumerateAllSections(sections, count);
  std::int32_t number = 0;
  for (const Text& section : sections) {
    if (progress) progress(count, ++number, section);
    AddCategory(tree, ini, section);
  }
  DeleteFileW(Wide(CatalogueFile()));
}

}  // namespace torvane
