// The lists by their names, and one of them filled: the window's readers with nobody looking.
#pragma once

#include <memory>

#include "finding/known_lists.h"
#include "windows/controls/form.h"
#include "windows/controls/list.h"

namespace torvane {

/// A list and the name that no other has: "Text Editors/Notepad+".
struct NamedList {
  Text name;
  KnownList known;
};

/// All lists, in the order of the window's tree.
std::vector<NamedList> NamedLists(const OwnLists& own);

/// An entry of a list.
struct Entry {
  Text text;  ///< in one piece: a path whole
  std::vector<Text> columns;
  bool isMissing = false;
  bool isUnreachable = false;  ///< it can't be told whether it is missing
  bool isPinned = false;
};

/// A list filled from its store.
class OpenList {
 public:
  /// Fills it. Where the folder of its INI file isn't known it has no store.
  explicit OpenList(const NamedList& named, TextView iniFolder);

  const Text& Name() const { return named_->name; }
  const ListPlace& Place() const { return named_->known.description.place; }
  List& Rows() { return list_; }
  /// What it was filled from; null for a list without a store.
  const ShownList* Shown() const { return ShownIn(list_); }
  /// One a row.
  const std::vector<Entry>& Entries() const { return entries_; }
  std::int64_t MissingCount() const;
  /// Reads the store anew.
  void ReadAnew();

 private:
  void Describe();

  const NamedList* named_;
  Form form_{BorderStyle::Dialog};
  List list_{form_, u"Entries"};
  std::vector<Entry> entries_;
};

}  // namespace torvane
