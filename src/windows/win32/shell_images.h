// The shell's icons by their numbers, in the sizes that screens of any scale take.
//
// The shell has them in a few sizes, all for the scale that the first screen had at the sign-in.
// The numbers mean the same in each.
#pragma once

#include "windows/win32/handles.h"

namespace torvane {

/// The shell's list of the smallest icons that have `size` pixels each way, else of its largest. It
/// belongs to the shell.
HIMAGELIST ShellImagesFor(int size);

/// The shell's small icons, drawn in another size under the same numbers.
class ScaledShellImages {
 public:
  /// All that the shell has by now, in `size` pixels: the shell's own list where that is its size.
  HIMAGELIST at(int size);

 private:
  int size_ = 0;
  UniqueImageList images_;
};

}  // namespace torvane
