// All lists that there are, without a window: the catalogue's, the user's own, and those found.
#pragma once

#include "finding/list_finder.h"
#include "finding/own_lists.h"

namespace torvane {

/// A list with the category that it stands in, as the tree shows both.
struct KnownList {
  Text category;
  ListDescription description;
  ListGroup group = ListGroup::None;
};

/// The catalogue's rows, in its order.
std::vector<CategoryRow> CatalogueRows();

/// The list of a row; nothing where its type isn't known.
std::optional<KnownList> ListOfRow(const CategoryRow& row);

/// The keys below Software that rows say are lists, for ListFinder.
NameSet KeysOfRows(const std::vector<CategoryRow>& rows);

/// Every list, in the order of the tree. Looks through the user's registry.
std::vector<KnownList> AllLists(const OwnLists& own);

}  // namespace torvane
