// Pictures by number, from 1 in order of adding.
#pragma once

#include <vector>

#include "windows/controls/picture.h"

namespace torvane {

/// The pictures of a tree.
class ImageList {
 public:
  void Add(Picture picture) { pictures_.push_back(std::move(picture)); }
  int Count() const { return static_cast<int>(pictures_.size()); }
  const Picture& operator()(int index) const {
    return pictures_.at(static_cast<std::size_t>(index - 1));
  }

 private:
  std::vector<Picture> pictures_;
};

}  // namespace torvane
