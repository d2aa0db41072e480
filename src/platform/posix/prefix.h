// The Wine prefix that the layer works on: where it lies, and forgetting what was read from it.
#pragma once

#include <filesystem>
#include <stdexcept>

namespace torvane::posix {

/// The prefix that the environment names can't be used; what() says which path and why.
class PrefixError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The prefix's folder: $WINEPREFIX, else ~/.wine if it exists, else a minimal prefix that is made
/// on first use at $XDG_DATA_HOME/torvane/prefix. Found once and kept until ForgetWorld().
/// Throws PrefixError where $WINEPREFIX doesn't exist or has no drive_c.
const std::filesystem::path& PrefixRoot();

/// Drops the prefix and all that was read from it (hives, profile files, folder listings, code
/// page), pending changes included; the next call reads the environment anew. Open keys die.
void ForgetWorld();

/// Joins a cache to ForgetWorld: a static object of this type in the cache's source names what
/// empties it. `forget` must not need the prefix.
class AtForget {
 public:
  explicit AtForget(void (*forget)());
};

}  // namespace torvane::posix
