// What a list is, put together from four pieces: where it is stored, how its values are named, how
// an entry is shown, and how the list is rewritten. A row of the catalogue becomes such a
// description by one table over the list types; whoever knows other lists puts the same pieces
// together.
#pragma once

#include <array>
#include <memory>

#include "readers/entry_names.h"
#include "readers/list_form.h"
#include "storage/value_store.h"

namespace torvane {

/// Where a list is stored.
struct ListPlace {
  enum class Kind {
    Key,          ///< a registry key below HKEY_CURRENT_USER
    WindowsFile,  ///< an INI file in the Windows folder
    AskedFile,    ///< an INI file in a folder that the user is asked for once
  };

  Kind kind = Kind::Key;
  Text location;  ///< the key's path, or the file's name
  Text section;   ///< of the INI file
};

/// Which values a reader walks over.
enum class Listing {
  Names,    ///< all that the store names
  Numbers,  ///< as many numbers from the first on as the store has names, in their order
};

/// Which values a rewrite takes out of the store.
enum class Removal {
  Everything,    ///< all of a key; the survivors come back renumbered
  WholeSection,  ///< the same for a section, with its comments
  Numbered,      ///< the numbers that the section's count of keys reaches
  Chosen,        ///< the values of the rows that go, and no others
  Listed,        ///< the numbered entries and their count; all else of the key stays
};

/// Which whole-list items the popup of a list can enable.
enum class ListGroup { None, Plain, Files };

/// What a list is.
struct ListDescription {
  MruEntry entry;  ///< the row, as the items' tags have it
  ListPlace place;
  EntryNames names;
  const ListForm* form = nullptr;
  Listing listing = Listing::Names;
  Removal removal = Removal::Everything;
};

/// One type of list that a row can have.
struct ListType {
  TextView number;  ///< as the rows spell it
  ListPlace::Kind place;
  Listing listing;
  NameRule names;
  const ListForm* form;
  Removal removal;
  ListGroup group;
};

/// The type of that number; null for none. The comparison is of texts, so "00" is no type.
const ListType* FindListType(TextView number);

/// The list that a row describes, taken for one of that type.
ListDescription DescribeRow(const MruEntry& row, const ListType& type);

/// Sets up a list's columns and fills it from its store, which for an AskedFile may ask the user
/// for the folder. Throws RaisedError where the program's own key for such folders can't be made,
/// or the store can't be read; the list then has its columns and no items.
void FillList(ListDescription description, List& list);
/// Fills the list again from the store that it was filled from; columns stay. Throws where that
/// can't be read.
void FillListAgain(List& list);

/// What a list on the screen was filled from.
struct ShownList : ListSource {
  ListDescription description;
  std::unique_ptr<ValueStore> store;
  /// What the store held, or what the last command left there. An item's Number is the place of its
  /// value here.
  std::shared_ptr<const StorePicture> picture;
};

/// What the list was filled from; null for a list that shows no store.
ShownList* ShownIn(const List& list);

/// The places in a picture of the values that a reader walks over, in its order.
std::vector<std::size_t> ListedValues(const ListDescription& description,
                                      const StorePicture& picture);

/// How many values, from the first on, a section's listing of names has room for.
std::size_t ListedNames(const StorePicture& picture);

/// The columns' texts and the missing mark of an entry, as the list shows them.
struct ShownRow {
  std::array<Text, 3> texts;
  bool missing = false;
  bool operator==(const ShownRow&) const = default;
};
ShownRow RowOf(const ShownEntry& entry);
ShownRow RowOf(const ListItem& item);

}  // namespace torvane
