// Whether a wineserver runs on a prefix, and keeping one from starting while we write.
#pragma once

#include <filesystem>
#include <vector>

#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/disk/refusal.h"
#include "platform/posix/disk/shared_file.h"
#include "platform/posix/prefix/server_places.h"

namespace torvane::posix {

/// A wineserver holds the prefix's registry in memory and would overwrite what is written now.
class PrefixInUse : public WriteRefused {
 public:
  PrefixInUse();
};

/// Whether a wineserver runs on the prefix, in whatever sandbox, or is just ending and may still
/// write. Another Torvane that is writing is none.
bool WineServerRuns(const std::filesystem::path& prefix);

/// While it lives, no wineserver starts on the prefix from where one is known to start: one that
/// tries ends at once, and its client asks again for some seconds. The folders and the locks that
/// it makes for that stay, as Wine leaves its own: a server may be about to lock what is removed.
class WineServerHold : public WriteHold {
 public:
  /// Throws PrefixInUse if a server runs, another std::system_error where that can't be asked.
  explicit WineServerHold(const std::filesystem::path& prefix);

  /// To be called when the file is written. Throws WriteRefused (MayNotLast) if a server has come
  /// up all the same, from a place that isn't held: it may have read the old one.
  void confirm() override;

 private:
  bool hold(const std::filesystem::path& lock);

  ServedPrefix prefix_;
  std::vector<FileDescriptor> locks_;
};

}  // namespace torvane::posix
