// When a key is a list of paths. In doubt it isn't one: a rewrite of what only looks like a list
// would take a program's settings apart.
#pragma once

#include <optional>

#include "readers/entry_names.h"
#include "storage/value_store.h"

namespace torvane {

/// How the values of a list are named and counted.
struct KeyForm {
  EntryNames names;
  Text countValue;             ///< empty for none
  std::int32_t countType = 0;  ///< kTextType or kNumberType
};

/// The name of an entry, taken apart.
struct NumberedName {
  TextView prefix;
  TextView digits;  ///< empty where the name ends with none
};
NumberedName TakeApart(TextView name);

/// The form of a key's values where they are a list; nothing where they aren't. `lastName` is the
/// last part of the key's path.
std::optional<KeyForm> FormOfKey(TextView lastName, const StorePicture& picture);

/// Whether a text is the path of one thing on a drive or a server, from the root on.
bool IsAbsolutePath(TextView text);

}  // namespace torvane
