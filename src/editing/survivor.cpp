#include "editing/survivor.h"

#include <algorithm>

#include "storage/names.h"

namespace torvane {
namespace {

// Whether `written` holds all that there was of the item's value and reads as the item does. The
// file system is asked for both as it is now, which may not be what it was when the list was read.
bool ReadsTheSame(const ShownList& shown, const ListItem& item, const StoredValue& written,
                  const Text& text) {
  const ListForm& form = *shown.description.form;
  const StoredValue& stored = shown.picture->values[item.Number()];
  if (!shown.store->ReadsWhole(stored) || !shown.store->Takes(text)) return false;
  const ShownEntry now = form.shows({stored.name, shown.store->ValueOf(stored)});
  if (now.written != text) return false;
  const NamedValue value{written.name, shown.store->ValueOf(written)};
  if (form.passesOver(shown.description.entry, value)) return false;
  const ShownRow before = RowOf(item);
  const ShownRow then = RowOf(form.shows(value));
  return then.texts == before.texts &&
         (then.missing == before.missing || then.missing == now.IsMissing());
}

// The Run box knows the small letters alone.
bool IsLetter(const Text& name) {
  return name.size() == 1 && name.front() >= u'A' && name.front() <= u'Z';
}

}  // namespace

StoredValue SurvivingValue(const ShownList& shown, const ListItem& item, const Text& name) {
  const StoredValue& stored = shown.picture->values[item.Number()];
  StoredValue asStored{name, stored.type, stored.bytes};
  const auto writes = shown.description.form->writes;
  if (!writes) return asStored;
  const Text text = writes(item);
  StoredValue written = shown.store->ValueFor(name, text);
  if (written == asStored || ReadsTheSame(shown, item, written, text)) return written;
  return asStored;
}

Text OrderOfUse(const ShownList& shown, const std::vector<const ListItem*>& survivors,
                const std::vector<Text>& names) {
  const NameIndex index(*shown.picture);
  std::unordered_map<std::size_t, std::size_t> survivorAt;
  for (std::size_t n = 0; n < survivors.size(); ++n) survivorAt.emplace(survivors[n]->Number(), n);
  std::vector<std::size_t> byUse;
  std::vector<bool> isNamed(survivors.size());
  const auto add = [&](std::size_t n) {
    if (!isNamed[n]) byUse.push_back(n);
    isNamed[n] = true;
  };
  if (const auto order = index.Find(shown.description.entry.CountValue)) {
    for (const char16_t letter : AsText(shown.store->ValueOf(shown.picture->values[*order]))) {
      const auto place = index.Find(Text(1, letter));
      const auto survivor = place ? survivorAt.find(*place) : survivorAt.end();
      if (survivor != survivorAt.end()) add(survivor->second);
    }
  }
  for (std::size_t n = 0; n < survivors.size(); ++n) add(n);
  Text text;
  for (const std::size_t n : byUse) {
    if (IsLetter(names[n])) text += names[n];
  }
  return LowerCase(text);
}

}  // namespace torvane
