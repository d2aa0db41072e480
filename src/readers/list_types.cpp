// The fourteen types of list that a row of the catalogue can have.

#include <algorithm>
#include <array>

#include "readers/basListFill.h"
#include "readers/list_description.h"

namespace torvane {
namespace {

using Place = ListPlace::Kind;
using enum NameRule;
using Group = ListGroup;

constexpr auto kAll = Removal::Everything;
constexpr auto kByNumber = Removal::Numbered;
constexpr auto kNames = Listing::Names;

// In the order in which a row's type is looked up.
constexpr std::array<ListType, 14> kListTypes = {{
    {u"0", Place::Key, kNames, Numbered, &kFileForm, kAll, Group::Files},
    {u"2", Place::Key, kNames, Numbered, &kUrlForm, kAll, Group::Plain},
    {u"6", Place::Key, kNames, Numbered, &kFindReplaceForm, kAll, Group::Plain},
    {u"1", Place::Key, kNames, Numbered, &kFavoritesForm, kAll, Group::Files},
    {u"3", Place::Key, kNames, Numbered, &kFolderForm, kAll, Group::Files},
    {u"4", Place::Key, kNames, Numbered, &kCommaForm, kAll, Group::Files},
    {u"5", Place::Key, kNames, Own, &kValueNameForm, Removal::Chosen, Group::Files},
    {u"8", Place::Key, kNames, Own, &kRegEditForm, Removal::Chosen, Group::Plain},
    {u"9", Place::Key, kNames, Letters, &kCommandForm, kAll, Group::Plain},
    {u"11", Place::Key, kNames, Numbered, &kHostForm, kAll, Group::Plain},
    {u"20", Place::WindowsFile, kNames, Numbered, &kIniFileForm, kByNumber, Group::Files},
    {u"21", Place::AskedFile, kNames, Numbered, &kIniFolderForm, kByNumber, Group::Files},
    {u"22", Place::AskedFile, kNames, Numbered, &kIniFileForm, Removal::WholeSection, Group::Files},
    {u"23", Place::WindowsFile, Listing::Numbers, Numbered, &kIniFileForm, kByNumber, Group::Files},
}};

}  // namespace

const ListType* FindListType(TextView number) {
  const auto* type =
      std::find_if(kListTypes.begin(), kListTypes.end(),
                   [&](const ListType& candidate) { return candidate.number == number; });
  return type == kListTypes.end() ? nullptr : type;
}

ListDescription DescribeRow(const MruEntry& row, const ListType& type) {
  const Text location = type.place == Place::Key ? u"software\\" + row.Location : row.Location;
  return {.entry = row,
          .place = {type.place, location, row.Section},
          .names = NamesOfRow(type.names, row),
          .form = type.form,
          .listing = type.listing,
          .removal = type.removal};
}

void FillByListType(const MruEntry& Entry, List& list) {
  if (const ListType* type = FindListType(Entry.ListType))
    FillList(DescribeRow(Entry, *type), list);
}

namespace {

void FillAs(TextView number, const MruEntry& entry, List& list) {
  FillList(DescribeRow(entry, *FindListType(number)), list);
}

}  // namespace

void FillRegistryList(const MruEntry& Entry, List& list) {
  FillAs(u"0", Entry, list);
}

void FillFavoritesList(const MruEntry& Entry, List& list) {
  FillAs(u"1", Entry, list);
}

void FillUrlList(const MruEntry& Entry, List& list) {
  FillAs(u"2", Entry, list);
}

void FillFolderList(const MruEntry& Entry, List& list) {
  FillAs(u"3", Entry, list);
}

void FillCommaList(const MruEntry& Entry, List& list) {
  FillAs(u"4", Entry, list);
}

void FillValueNameList(const MruEntry& Entry, List& list) {
  FillAs(u"5", Entry, list);
}

void FillFindReplaceList(const MruEntry& Entry, List& list) {
  FillAs(u"6", Entry, list);
}

void FillRegEditFavorites(const MruEntry& Entry, List& list) {
  FillAs(u"8", Entry, list);
}

void FillCommandList(const MruEntry& Entry, List& list) {
  FillAs(u"9", Entry, list);
}

void FillHostList(const MruEntry& Entry, List& list) {
  FillAs(u"11", Entry, list);
}

void FillIniList(const MruEntry& Entry, List& list) {
  FillAs(u"20", Entry, list);
}

void FillIniFolderList(const MruEntry& Entry, List& list) {
  FillAs(u"21", Entry, list);
}

void FillInstalledIniList(const MruEntry& Entry, List& list) {
  FillAs(u"22", Entry, list);
}

void FillWinIniList(const MruEntry& Entry, List& list) {
  FillAs(u"23", Entry, list);
}

}  // namespace torvane
