#include "finding/known_lists.h"

#include "platform/extras.h"
#include "platform/resource_numbers.h"

namespace torvane {

std::vector<CategoryRow> CatalogueRows() {
  const auto bytes = DataResource(resource::kCatalogue);
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  OwnLists lists;
  AddOwnLists(u"catalogue", text.substr(0, text.find('\0')), lists);
  return std::move(lists.rows);
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
