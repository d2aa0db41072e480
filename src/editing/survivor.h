// How an entry that nobody chose goes through the rewrite of its list.
#pragma once

#include "readers/list_description.h"

namespace torvane {

/// The value that an item is kept as under `name`: what its columns give where that reads as the
/// item does, else as it is stored, type and data to the byte.
StoredValue SurvivingValue(const ShownList& shown, const ListItem& item, const Text& name);

/// The text of the count value of the Run list: the small letters under which the commands stand,
/// the one used last first, in the order that `before` had, those that it didn't name behind.
/// `places` are the places in `before`'s picture of the survivors, in list order.
Text OrderOfUse(const ShownList& shown, const std::vector<const ListItem*>& survivors,
                const std::vector<Text>& names);

}  // namespace torvane
