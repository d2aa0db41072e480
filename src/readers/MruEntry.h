// What is known of one list: a row of the catalogue.
#pragma once

#include "storage/text.h"

namespace torvane {

/// The value of a field that says that a row has no such thing.
constexpr TextView kNone = u"*";

/// What separates the fields of a row, of a node's tag and of an item's tag.
constexpr TextView kFieldSeparators = u",;";

/// A row of the catalogue, all of it text.
struct MruEntry {
  Text EntryName;    ///< what the tree shows
  Text Location;     ///< key below "software\", or the name of an INI file
  Text ListType;     ///< decimal number of the list's form
  Text Section;      ///< INI section
  Text ValuePrefix;  ///< how the names of the entries begin
  Text FirstIndex;   ///< the first entry's number; "00" for two digits
  Text CountValue;   ///< a value that is bookkeeping and no entry
  Text CountKind;    ///< "S" or "D": how CountValue is stored
  Text ExeName;      ///< the owning program, for its App Paths key
};

/// The record of a catalogue row.
MruEntry EntryFromRow(TextView row);
/// The tag of a program's tree node: fields 2 to 9 of its row joined by ";".
Text NodeTag(const MruEntry& entry);
/// The record of a node, as the readers get it: ExeName stays empty.
MruEntry EntryFromNode(const Text& nodeText, TextView nodeTag);

/// The tag of a list's item: "KEEP" or "KILL", then fields 2 to 8 of the row, joined by ";".
Text ItemTag(bool missing, const MruEntry& entry);
/// The list that an item belongs to: fields 2 to 8 of its row.
MruEntry EntryFromItemTag(TextView itemTag);
/// Whether an item's tag marks it as missing.
bool IsMissing(TextView itemTag);

}  // namespace torvane
