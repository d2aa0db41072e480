#include "finding/row_check.h"

#include <algorithm>
#include <array>
#include <vector>

#include "readers/list_description.h"
#include "storage/clsParse.h"

namespace torvane {
namespace {

constexpr std::array<TextView, 9> kFieldNames = {u"EntryName",  u"Location",    u"ListType",
                                                 u"Section",    u"ValuePrefix", u"FirstIndex",
                                                 u"CountValue", u"CountKind",   u"ExeName"};

constexpr std::size_t kLongestKeyName = 255;

std::vector<Text> SplitFields(TextView fields) {
  clsParse parser;
  const std::int32_t count = parser.Initialise(fields, kFieldSeparators);
  std::vector<Text> parts;
  for (std::int32_t n = 1; n <= count; ++n) parts.push_back(parser.ElementAsString(n));
  return parts;
}

// A key as regedit shows it begins with its root.
bool IsRoot(TextView name) {
  constexpr std::array<TextView, 7> kRoots = {u"HKCU", u"HKLM",     u"HKCR",    u"HKU",
                                              u"HKCC", u"Computer", u"Registry"};
  return SameName(name.substr(0, 5), u"HKEY_") ||
         std::any_of(kRoots.begin(), kRoots.end(),
                     [name](TextView root) { return SameName(name, root); });
}

Text CheckKey(TextView path) {
  constexpr TextView kOwnKey = u"Halvex\\Torvane";
  const TextView front = path.substr(0, kOwnKey.size() + 1);
  if (SameName(front, kOwnKey) || SameName(front, Text(kOwnKey) + u'\\')) {
    return u"the key is Torvane's own";
  }
  for (TextView rest = path;;) {
    const auto end = std::min(rest.find(u'\\'), rest.size());
    const TextView name = rest.substr(0, end);
    if (name == u"." || name == u".." || (rest.size() == path.size() && IsRoot(name))) {
      return u"the key lies outside Software; it is written from what stands behind "
             u"HKEY_CURRENT_USER\\Software\\ on";
    }
    if (name.empty()) return u"the key has a part without a name";
    if (name.size() > kLongestKeyName) return u"the key has a part that is too long";
    if (end == rest.size()) return {};
    rest.remove_prefix(end + 1);
  }
}

// A field in a message, which a long one would fill.
Text Quoted(TextView field) {
  constexpr std::size_t kMost = 40;
  return u"'" + Text(field.substr(0, kMost)) + (field.size() > kMost ? u"\u2026'" : u"'");
}

Text CheckFile(const MruEntry& entry) {
  if (entry.Location.find_first_of(u"\\/:*?<>|") != Text::npos) {
    return Quoted(entry.Location) + u" is no name of an INI file without its folder";
  }
  if (entry.Section == kNone) return u"the INI file's section is missing";
  if (entry.ValuePrefix.find(u'=') != Text::npos) return u"a key of an INI file can't hold '='";
  return {};
}

Text CheckCount(const MruEntry& entry) {
  const bool isKnown = entry.CountKind == u"S" || entry.CountKind == u"D";
  const bool isNone = entry.CountValue == kNone && entry.CountKind == kNone;
  if (isNone || (isKnown && entry.CountValue != kNone)) return {};
  return u"CountValue and CountKind don't go together: the kind is S or D, and * for both where "
         u"there is no count";
}

Text CheckEntry(const MruEntry& entry) {
  if (entry.EntryName == kNone) return u"the program has no name";
  const ListType* type = FindListType(entry.ListType);
  if (!type) return Quoted(entry.ListType) + u" is no type of list";
  const bool isKey = type->place == ListPlace::Kind::Key;
  if (Text reason = isKey ? CheckKey(entry.Location) : CheckFile(entry); !reason.empty()) {
    return reason;
  }
  if (NamesOfRow(type->names, entry).kind == EntryNames::Kind::Unknown) {
    return u"prefix " + Quoted(entry.ValuePrefix) + u" and first number " +
           Quoted(entry.FirstIndex) + u" name no entries";
  }
  if (entry.ExeName.find_first_of(u"\\/") != Text::npos) {
    return Quoted(entry.ExeName) + u" is no file name without its folder";
  }
  return CheckCount(entry);
}

}  // namespace

bool HasControlCharacter(TextView text) {
  return std::any_of(text.begin(), text.end(),
                     [](char16_t unit) { return unit < u' ' || (unit >= 0x7F && unit < 0xA0); });
}

Text ReadCheckedRow(TextView fields, MruEntry& entry) {
  if (HasControlCharacter(fields)) return u"it has a control character";
  if (fields.find(u'"') != TextView::npos) return u"it has a double quote";
  const std::vector<Text> parts = SplitFields(fields);
  // What stands behind the ninth is passed over, as in the catalogue.
  if (parts.size() < kFieldNames.size()) {
    return u"it has " + Decimal(static_cast<std::int64_t>(parts.size())) +
           u" fields in place of nine";
  }
  const auto empty = std::find(parts.begin(), parts.begin() + kFieldNames.size(), Text());
  if (empty != parts.begin() + kFieldNames.size()) {
    return Text(kFieldNames[static_cast<std::size_t>(empty - parts.begin())]) +
           u" is empty; * stands for none";
  }
  entry = EntryFromRow(fields);
  return CheckEntry(entry);
}

}  // namespace torvane
