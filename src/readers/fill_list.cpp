// The theme of all readers: the walk over a list's store that fills the list.

#include "platform/extras.h"
#include "readers/ini_folders.h"
#include "readers/list_description.h"
#include "storage/file_lookups.h"
#include "storage/names.h"
#include "storage/paths.h"
#include "storage/raised_error.h"

namespace torvane {
namespace {

// As many characters of key names as a section's listing holds, each name closed by a NUL.
constexpr std::size_t kLongestListing = 8190;
constexpr std::int32_t kProblemErrorNumber = 26006;

void PrepareList(const ListForm& form, List& list) {
  ResetCounters();
  for (const TextView column : form.columns) list.ColumnHeaders().Add(Text(column));
}

// Null where the user doesn't say where the file lies.
std::unique_ptr<ValueStore> OpenStore(const ListDescription& description, const List& list) {
  const ListPlace& place = description.place;
  switch (place.kind) {
    case ListPlace::Kind::Key:
      return std::make_unique<KeyStore>(place.location);
    case ListPlace::Kind::WindowsFile:
      return std::make_unique<SectionStore>(AddBackslash(GetWindowsFolder()) + place.location,
                                            place.section);
    default: {
      const auto folder = IniFolder(description.entry, list);
      if (!folder) return nullptr;
      return std::make_unique<SectionStore>(*folder + place.location, place.section);
    }
  }
}

void AddEntries(const ShownList& shown, List& list) {
  const FileLookups lookups;
  ForgetImages();
  const ListDescription& description = shown.description;
  const ListForm& form = *description.form;
  const std::vector<std::size_t> places = ListedValues(description, *shown.picture);
  ListCounters& counters = Counters();
  if (form.counts == CountRule::Names)
    counters.TotalCount = static_cast<std::int32_t>(places.size());
  const Text foundTag = ItemTag(false, description.entry);
  const Text missingTag = ItemTag(true, description.entry);
  for (const std::size_t place : places) {
    const StoredValue& stored = shown.picture->values[place];
    const NamedValue value{stored.name, shown.store->ValueOf(stored)};
    if (form.passesOver(description.entry, value)) continue;
    if (form.counts == CountRule::Entries) ++counters.TotalCount;

    const ShownEntry entry = form.shows(value);
    const bool missing = entry.IsMissing();
    if (missing) ++counters.MissingCount;
    ListItem* const item = AddListEntry(list, entry.kind, entry.iconPath, entry.text1, entry.text2,
                                        missing ? missingTag : foundTag, entry.text3, place);
    if (item && entry.presence != Presence::Found) item->ImageNote(NoteOn(entry.presence));
  }
}

// What reads as nothing because it can't be read is told.
void CheckReadable(const ValueStore& store) {
  if (const Text problem = store.Problem(); !problem.empty())
    throw RaisedError(kProblemErrorNumber, ExecutableBaseName(), problem);
}

void ReadInto(ShownList& shown, List& list) {
  StorePicture picture = shown.store->Read();
  picture.values.shrink_to_fit();
  shown.picture = std::make_shared<const StorePicture>(std::move(picture));
  AddEntries(shown, list);
}

}  // namespace

std::size_t ListedNames(const StorePicture& picture) {
  std::size_t listed = 0;
  std::size_t length = 0;
  for (const StoredValue& value : picture.values) {
    length += value.name.size() + 1;
    if (length > kLongestListing) break;
    ++listed;
  }
  return listed;
}

std::vector<std::size_t> ListedValues(const ListDescription& description,
                                      const StorePicture& picture) {
  std::vector<std::size_t> places;
  const bool isKey = description.place.kind == ListPlace::Kind::Key;
  const bool byNumber = description.listing == Listing::Numbers;
  if (isKey && !byNumber) {
    for (std::size_t place = 0; place < picture.values.size(); ++place) places.push_back(place);
    return places;
  }
  const NameIndex index(picture);
  const std::size_t count = isKey ? picture.values.size() : ListedNames(picture);
  for (std::size_t n = 0; n < count; ++n) {
    const Text name = byNumber ? description.names.Numbered(static_cast<std::int64_t>(n) + 1)
                               : picture.values[n].name;
    if (const auto place = index.Find(name)) places.push_back(*place);
  }
  return places;
}

ShownRow RowOf(const ShownEntry& entry) {
  const ListKindRow* kind = FindListKind(entry.kind);
  if (!kind) return {};
  const std::array<Text, 4> texts = {{{}, entry.text1, entry.text2, entry.text3}};
  const auto text = [&](int number) { return texts[static_cast<std::size_t>(number)]; };
  return {{text(kind->text), text(kind->subItem1), text(kind->subItem2)}, entry.IsMissing()};
}

ShownRow RowOf(const ListItem& item) {
  return {{item.Text(), item.SubItems(1), item.SubItems(2)}, IsMissing(item.Tag())};
}

void FillList(ListDescription description, List& list) {
  PrepareList(*description.form, list);
  auto store = OpenStore(description, list);
  if (!store) return;
  auto shown = std::make_unique<ShownList>();
  shown->description = std::move(description);
  shown->store = std::move(store);
  ReadInto(*shown, list);
  ShownList& source = *shown;
  list.Source(std::move(shown));
  CheckReadable(*source.store);
}

void FillListAgain(List& list) {
  ShownList* shown = ShownIn(list);
  if (!shown) return;
  ResetCounters();
  list.ListItems().Clear();
  ReadInto(*shown, list);
  CheckReadable(*shown->store);
}

ShownList* ShownIn(const List& list) {
  return dynamic_cast<ShownList*>(list.Source());
}

}  // namespace torvane
