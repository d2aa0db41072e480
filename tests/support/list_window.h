// A list on a form without views, filled from a key of a scratch world.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "readers/entry_list.h"
#include "support/recording_toolkit.h"
#include "support/scratch_world.h"
#include "windows/controls/form.h"

namespace torvane::testing {

/// A row of the list: marker and column texts, in the code page; prints itself.
using Shown = std::vector<std::string>;

inline std::vector<Shown> Sorted(std::vector<Shown> rows) {
  std::sort(rows.begin(), rows.end());
  return rows;
}

/// The base of tests that read and rewrite lists.
class ListWorld : public ScratchWorld {
 protected:
  static constexpr auto kListKey = "software\\TorvaneTest\\List";

  void Key(const std::vector<TextValue>& values) { MakeKey(kListKey, values); }

  /// The row of the list under kListKey.
  static MruEntry ListEntry(const std::string& listType) {
    return EntryFromRow(Utf16("Test,TorvaneTest\\List," + listType + ",*,File,1,MRUCount,S,*"));
  }
  using Reader = void (*)(const MruEntry&, List&);
  void Fill(Reader reader, const std::string& listType) { FillEntry(reader, ListEntry(listType)); }
  void FillEntry(Reader reader, const MruEntry& entry) {
    ClearEntryList(list_);
    reader(entry, list_);
  }

  std::vector<Shown> Rows() const {
    std::vector<Shown> rows;
    for (int n = 1; n <= list_.ListItems().Count(); ++n) {
      const ListItem& item = list_.ListItems()(n);
      Shown row{Utf8(item.Tag().substr(0, 4)), Utf8(item.Text())};
      for (int column = 1; column < list_.ColumnHeaders().Count(); ++column) {
        row.push_back(Utf8(item.SubItems(column)));
      }
      rows.push_back(row);
    }
    return rows;
  }
  /// For lists of values whose order is the registry's own.
  std::vector<Shown> SortedRows() const { return Sorted(Rows()); }

  RecordingToolkit toolkit_;
  Form form_{BorderStyle::Sizable};
  List list_{form_, u"List"};
  StatusBar status_{form_, u"Status", {0, 80, 80}};
};

}  // namespace torvane::testing
