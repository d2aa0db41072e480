// Splits a text into numbered elements at a set of separators, double quotes protecting them.
#pragma once

#include <cstdint>
#include <vector>

#include "storage/text.h"

namespace torvane {

/// One split text. Initialise() replaces whatever the object held.
class clsParse {
 public:
  /// Splits `Source` at any character of `Separators` (none: the whole source is one element).
  /// Gives the number of elements, at least 1, or 0 where an ordinary character follows a closing
  /// double quote; the elements closed before that can still be read.
  std::int32_t Initialise(TextView Source, TextView Separators = {});

  /// The element at a 1-based index as the source has it, quotes included; empty for an index
  /// outside the elements and for one that a failed scan left open.
  Text ElementAsString(std::int32_t index) const;

 private:
  std::int32_t SplitUnquoted(char16_t separator);

  Text source_;
  /// boundaries_[k] is the 1-based position of the separator that ends element k; slot 0 is 0.
  std::vector<std::int32_t> boundaries_;
};

}  // namespace torvane
