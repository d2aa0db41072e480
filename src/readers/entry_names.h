// How the values of a list are named in their store.
#pragma once

#include <cstdint>
#include <vector>

#include "readers/MruEntry.h"

namespace torvane {

/// What a list's type says of its names; the row has the rest.
enum class NameRule {
  Numbered,  ///< the row's prefix and a number
  Letters,   ///< one character, A, B, C and on
  Own,       ///< the value's name is part of the entry and stays
};

/// The names of a list's entries. A row whose fields say none that is known has `Unknown`.
struct EntryNames {
  enum class Kind { Numbered, Letters, Own, Unknown };

  Kind kind = Kind::Unknown;
  Text prefix = {};
  std::int64_t first = 0;  ///< number of the first entry
  std::size_t digits = 1;  ///< at least so many

  /// The name of entry `n` (from 1, in list order) of a numbered form; empty for the others.
  Text Numbered(std::int64_t n) const;
  /// The names of entries 1 to `count`; fewer where the form has no more, none for Own and Unknown.
  std::vector<Text> First(std::size_t count) const;
};

/// The names that a row gives: its ValuePrefix and its FirstIndex. A prefix that is the same digits
/// as the first number fills the field and is no prefix; "*" is none either. Closing zeros ahead of
/// the first number ("00") say how many digits a number has.
EntryNames NamesOfRow(NameRule rule, const MruEntry& row);

/// The names of a form that is a prefix followed by its first number ("File1"), or "a*".
EntryNames NamesOfForm(TextView form);

}  // namespace torvane
