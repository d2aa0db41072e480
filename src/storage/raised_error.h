// The error that an operation raises when it can't change what it was asked to change.
#pragma once

#include <cstdint>
#include <stdexcept>

#include "storage/text.h"

namespace torvane {

/// A raised error: number, source and description, as the user and a caller see them.
class RaisedError : public std::runtime_error {
 public:
  RaisedError(std::int32_t number, Text source, Text description)
      : std::runtime_error(ToAnsi(description)),
        number_(number),
        source_(std::move(source)),
        description_(std::move(description)) {}

  std::int32_t Number() const { return number_; }
  const Text& Source() const { return source_; }
  const Text& Description() const { return description_; }

 private:
  std::int32_t number_;
  Text source_;
  Text description_;
};

}  // namespace torvane
