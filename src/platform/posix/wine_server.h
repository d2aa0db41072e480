// Whether a wineserver runs on a prefix, and keeping one from starting while we write.
#pragma once

#include <filesystem>
#include <vector>

#include "platform/posix/atomic_file.h"
#include "platform/posix/write_back.h"

namespace torvane::posix {

/// A wineserver holds the prefix's registry in memory and would overwrite what is written now.
class PrefixInUse : public WriteRefused {
 public:
  PrefixInUse();
};

/// Whether a wineserver runs on the prefix, or is just ending and may still write.
bool WineServerRuns(const std::filesystem::path& prefix);

/// While it lives, no wineserver starts on the prefix, as far as one has run there before: one that
/// tries ends at once, and its client asks again for some seconds.
class WineServerHold {
 public:
  /// Throws PrefixInUse if a server runs.
  explicit WineServerHold(const std::filesystem::path& prefix);

 private:
  std::vector<FileDescriptor> locks_;
};

}  // namespace torvane::posix
