// Forgetting all that was read of the Windows world: each cache of the layer joins by itself.
#pragma once

namespace torvane::posix {

/// Drops the prefix and all that was read from it (hives, profile files, folder listings, code
/// page), pending changes included; the next call reads the environment anew. Open keys die.
void ForgetWorld();

/// Joins a cache to ForgetWorld: a static object of this type in the cache's source names what
/// empties it. `forget` must not need another cache.
class AtForget {
 public:
  explicit AtForget(void (*forget)());
};

}  // namespace torvane::posix
