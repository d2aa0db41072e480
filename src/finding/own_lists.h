// The user's own lists: files of rows like the catalogue's, each section a category.
#pragma once

#include <string_view>
#include <vector>

#include "readers/MruEntry.h"

namespace torvane {

/// A row and the category that it stands in.
struct CategoryRow {
  Text category;
  MruEntry entry;
};

/// A row that can't be right, and why.
struct LeftOutRow {
  Text file;
  int line = 0;  ///< 0 for the file as a whole
  Text reason;
};

/// The rows of files, those of one category behind one another.
struct OwnLists {
  std::vector<CategoryRow> rows;
  std::vector<LeftOutRow> leftOut;
};

/// The file's name, in the folders where the platform keeps the user's files.
inline constexpr TextView kOwnListsFile = u"lists.ini";

/// Reads the user's files; none give no rows.
OwnLists ReadOwnLists();

/// Reads the bytes of a file: UTF-16 or UTF-8 by its mark, else UTF-8, else the ANSI code page.
void AddOwnLists(const Text& file, std::string_view bytes, OwnLists& lists);

/// What tells the user of all rows that were left out; empty where none was.
Text LeftOutMessage(const OwnLists& lists);

}  // namespace torvane
