#include "spine/dispatch.h"

#include <algorithm>
#include <array>

#include "readers/basListFill.h"

namespace torvane {
namespace {

struct ReaderRow {
  TextView listType;
  void (*reader)(const MruEntry& Entry, List& list);
};

constexpr std::array<ReaderRow, 14> kReaders = {{
    {u"0", FillRegistryList},
    {u"2", FillUrlList},
    {u"6", FillFindReplaceList},
    {u"1", FillFavoritesList},
    {u"3", FillFolderList},
    {u"4", FillCommaList},
    {u"5", FillValueNameList},
    {u"8", FillRegEditFavorites},
    {u"9", FillCommandList},
    {u"11", FillHostList},
    {u"20", FillIniList},
    {u"21", FillIniFolderList},
    {u"22", FillInstalledIniList},
    {u"23", FillWinIniList},
}};

}  // namespace

void FillByListType(const MruEntry& entry, List& list) {
  const auto* row = std::find_if(kReaders.begin(), kReaders.end(), [&](const ReaderRow& candidate) {
    return candidate.listType == entry.ListType;
  });
  if (row != kReaders.end()) row->reader(entry, list);
}

}  // namespace torvane
