// A list that nobody named: a key that was taken for one.
#pragma once

#include <vector>

#include "readers/list_description.h"

namespace torvane {

/// The category of such lists.
inline constexpr TextView kFoundCategory = u"Also Found";

/// A key below HKEY_CURRENT_USER\Software that is a list.
struct FoundList {
  Text key;  ///< from what stands behind "Software\" on
  ListDescription description;

  /// The key's whole path.
  Text Tip() const { return u"HKEY_CURRENT_USER\\Software\\" + key; }
};

/// The list that the values of a key are: paths under numbered names, or what Office keeps; nothing
/// where they are neither. The list has no name yet.
std::optional<FoundList> ListOfKey(const Text& key, const StorePicture& picture);

/// Whether the names of a key's first two values leave it open that ListOfKey takes it for a list.
bool MayBeList(TextView key, std::span<const Text> firstNames);

/// Gives each list the name of its program, and puts the lists in the order of their names.
void NameLists(std::vector<FoundList>& lists);

/// The last part of a key's path.
TextView LastName(TextView key);

}  // namespace torvane
