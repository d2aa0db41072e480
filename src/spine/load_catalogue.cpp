// The catalogue's way into the tree: a category a section, a program a row.

#include "finding/known_lists.h"
#include "platform/winapi.h"
#include "spine/basMain.h"

namespace torvane {
namespace {

// Numbers of the tree's images.
constexpr int kClosedFolder = 1;
constexpr int kProgram = 3;

// The rows of one category stand together.
std::int32_t CountCategories(const std::vector<CategoryRow>& rows) {
  std::int32_t count = 0;
  for (std::size_t at = 0; at < rows.size(); ++at) {
    if (at == 0 || rows[at].category != rows[at - 1].category) ++count;
  }
  return count;
}

}  // namespace

// The rows come from the resource. The file that was made of it would give the same by a call for
// each row, and the layer reads a file that has only just been written anew at each of them.
void LoadCatalogue(Tree& tree, const LoadProgress& progress) {
  const std::vector<CategoryRow> rows = CatalogueRows();
  const std::int32_t count = CountCategories(rows);
  std::int32_t number = 0;
  Node* category = nullptr;
  for (const CategoryRow& row : rows) {
    if (!category || category->Text() != row.category) {
      if (progress) progress(count, ++number, row.category);
      category = &tree.Nodes().Add(nullptr, NodeRelationship::None, row.category, kClosedFolder);
    }
    tree.Nodes()
        .Add(category, NodeRelationship::Child, row.entry.EntryName, kProgram)
        .Tag(NodeTag(row.entry));
  }
  DeleteFileW(Wide(CatalogueFile()));
}

}  // namespace torvane
