#include "readers/MruEntry.h"

#include <array>

#include "storage/clsParse.h"

namespace torvane {
namespace {

using Field = Text MruEntry::*;

// Fields 1 to 9 in the order of a row.
constexpr std::array<Field, 9> kFields = {
    &MruEntry::EntryName,  &MruEntry::Location,    &MruEntry::ListType,
    &MruEntry::Section,    &MruEntry::ValuePrefix, &MruEntry::FirstIndex,
    &MruEntry::CountValue, &MruEntry::CountKind,   &MruEntry::ExeName};

// Fills fields `first` to `last` (from 1) from the elements of `source`, beginning at `element`.
void ReadFields(MruEntry& entry, TextView source, int first, int last, int element) {
  clsParse parser;
  parser.Initialise(source, kFieldSeparators);
  for (int field = first; field <= last; ++field) {
    entry.*kFields[static_cast<std::size_t>(field - 1)] = parser.ElementAsString(element++);
  }
}

Text JoinFields(const MruEntry& entry, int first, int last) {
  Text joined;
  for (int field = first; field <= last; ++field) {
    if (field > first) joined += u';';
    joined += entry.*kFields[static_cast<std::size_t>(field - 1)];
  }
  return joined;
}

}  // namespace

MruEntry EntryFromRow(TextView row) {
  MruEntry entry;
  ReadFields(entry, row, 1, 9, 1);
  return entry;
}

Text NodeTag(const MruEntry& entry) {
  return JoinFields(entry, 2, 9);
}

MruEntry EntryFromNode(const Text& nodeText, TextView nodeTag) {
  MruEntry entry;
  entry.EntryName = nodeText;
  ReadFields(entry, nodeTag, 2, 8, 1);
  return entry;
}

Text ItemTag(bool missing, const MruEntry& entry) {
  return (missing ? u"KILL;" : u"KEEP;") + JoinFields(entry, 2, 8);
}

MruEntry EntryFromItemTag(TextView itemTag) {
  MruEntry entry;
  ReadFields(entry, itemTag, 2, 8, 2);
  return entry;
}

bool IsMissing(TextView itemTag) {
  return itemTag.starts_with(u"KILL");
}

}  // namespace torvane
