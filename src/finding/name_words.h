// What the words in the names of keys and values say.
#pragma once

#include <span>

#include "storage/text.h"

namespace torvane {

/// Where in a name's words a mark must stand: "File" is a word of "RecentFiles", "recent-files" and
/// "RECENT FILES".
enum class WordPlace {
  Front,  ///< at the front of a word
  Edge,   ///< at the front or at the end of one
};

/// A text in lower case that says something where it stands so in a name.
struct WordMark {
  TextView text;
  WordPlace place;
};

/// Whether the name holds one of the marks, in whatever case.
bool HasMark(TextView name, std::span<const WordMark> marks);

/// Whether a key's last name, or the prefix of a list's values, says that recent things are listed.
bool SaysRecent(TextView name);
/// Whether a value's name says that it counts the values that begin with `prefix`.
bool SaysCount(TextView name, TextView prefix);

}  // namespace torvane
