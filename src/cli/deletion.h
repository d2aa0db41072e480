// The commands that delete: which entries go, and how a list changes whole or not at all.
#pragma once

#include <string>

#include "cli/open_list.h"

namespace torvane {

/// What the user wants to go.
struct Wish {
  enum class What { Missing, All, Chosen };

  What what = What::Missing;
  std::vector<Text> entries;   ///< for Chosen, whole texts
  std::vector<Text> patterns;  ///< for Chosen, with * and ?
  std::vector<Text> keep;      ///< patterns of what stays all the same
  bool takesUnreachable = false;
  bool isDryRun = false;
  std::string backup;  ///< a file to be made first, empty for none
};

/// An entry of a list, by both names.
struct ListedEntry {
  Text list;
  Text text;
};

/// What came of it.
struct DeletionReport {
  int status = 0;
  std::vector<ListedEntry> deleted;  ///< or what would be
  std::vector<ListedEntry> kept;     ///< wanted, but protected or out of reach
  std::vector<std::string> errors;   ///< a line each
};

/// Whether a text is what a pattern says: "*" for any characters, "?" for one, without case.
bool Matches(TextView text, TextView pattern);

/// Deletes from lists. Each is changed whole or stays as it was.
DeletionReport DeleteFrom(std::vector<std::unique_ptr<OpenList>> lists, const Wish& wish);

}  // namespace torvane
