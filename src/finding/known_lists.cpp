#include "finding/known_lists.h"

#include "platform/extras.h"
#include "platform/resource_numbers.h"

namespace torvane {

// Its rows are known to be right, and the start doesn't wait for them to be checked.
std::vector<CategoryRow> CatalogueRows() {
  const auto bytes = DataResource(resource::kCatalogue);
  const auto* letters = reinterpret_cast<const char*>(bytes.data());
  const Text text(letters, letters + bytes.size());
  std::vector<CategoryRow> rows;
  TextView category;
  std::size_t end = 0;
  for (std::size_t begin = 0; (end = text.find(u"\r\n", begin)) != Text::npos; begin = end + 2) {
    const TextView line = TextView(text).substr(begin, end - begin);
    if (line.starts_with(u'[')) category = line.substr(1, line.size() - 2);
    const std::size_t equals = line.find(u'=');
    if (equals == TextView::npos) continue;
    rows.push_back({Text(category), EntryFromRow(line.substr(equals + 1))});
  }
  return rows;
}

std::optional<KnownList> ListOfRow(const CategoryRow& row) {
  const ListType* type = FindListType(row.entry.ListType);
  if (!type) return std::nullopt;
  return KnownList{row.category, DescribeRow(row.entry, *type), type->group};
}

NameSet KeysOfRows(const std::vector<CategoryRow>& rows) {
  NameSet keys;
  for (const CategoryRow& row : rows) {
    const ListType* type = FindListType(row.entry.ListType);
    if (type && type->place == ListPlace::Kind::Key) keys.insert(row.entry.Location);
  }
  return keys;
}

std::vector<KnownList> AllLists(const OwnLists& own) {
  std::vector<CategoryRow> rows = CatalogueRows();
  rows.insert(rows.end(), own.rows.begin(), own.rows.end());
  std::vector<KnownList> lists;
  for (const CategoryRow& row : rows) {
    if (auto list = ListOfRow(row)) lists.push_back(std::move(*list));
  }
  ListFinder finder(KeysOfRows(rows));
  while (!finder.Look(std::chrono::hours(1))) {
  }
  for (FoundList& found : std::move(finder).Lists()) {
    lists.push_back({Text(kFoundCategory), std::move(found.description), ListGroup::Files});
  }
  return lists;
}

}  // namespace torvane
