#include "finding/found_list.h"

#include <algorithm>

#include "finding/key_form.h"
#include "finding/name_words.h"
#include "finding/office_lists.h"
#include "storage/clsRegistry.h"

namespace torvane {
namespace {

/// As a catalogue row spells them.
MruEntry EntryOf(const Text& key, const KeyForm& form) {
  const Text first = form.names.Numbered(1).substr(form.names.prefix.size());
  return {.EntryName = {},
          .Location = key,
          .ListType = u"0",
          .Section = Text(kNone),
          .ValuePrefix = form.names.prefix.empty() ? first : form.names.prefix,
          .FirstIndex = first,
          .CountValue = form.countValue.empty() ? Text(kNone) : form.countValue,
          .CountKind = form.countValue.empty()       ? Text(kNone)
                       : form.countType == kTextType ? u"S"
                                                     : u"D",
          .ExeName = Text(kNone)};
}

FoundList MakeList(const Text& key, const KeyForm& form, const ListForm& shown) {
  return {key,
          {.entry = EntryOf(key, form),
           .place = {ListPlace::Kind::Key, u"software\\" + key, {}},
           .names = form.names,
           .form = &shown,
           .listing = Listing::Numbers,
           .removal = Removal::Listed}};
}

}  // namespace

TextView LastName(TextView key) {
  return key.substr(key.rfind(u'\\') + 1);
}

std::optional<FoundList> ListOfKey(const Text& key, const StorePicture& picture) {
  if (IsOfficeKey(key)) {
    if (!HasOfficeItems(picture)) return std::nullopt;
    return MakeList(key, {OfficeNames(), {}, 0}, kOfficeForm);
  }
  const auto form = FormOfKey(LastName(key), picture);
  if (!form) return std::nullopt;
  return MakeList(key, *form, kStoredFileForm);
}

bool MayBeList(TextView key, std::span<const Text> firstNames) {
  // Most keys are told by what is looked at first.
  std::vector<TextView> prefixes;
  for (const Text& name : firstNames) {
    const NumberedName parts = TakeApart(name);
    if (!parts.digits.empty()) prefixes.push_back(parts.prefix);
  }
  if (!prefixes.empty() && SaysRecent(LastName(key))) return true;
  return std::any_of(prefixes.begin(), prefixes.end(), SaysRecent) || IsOfficeKey(key);
}

}  // namespace torvane
