// A walk over all keys of the user's registry, on each platform by the way that is short there: the
// calls that go from key to key cost an opening for each.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace torvane {

/// A key that a walk has come to.
struct WalkedKey {
  std::u16string path;                     ///< from what stands behind "Software\" on
  std::vector<std::u16string> firstNames;  ///< of its values, two at most
};

/// One walk over the keys below HKEY_CURRENT_USER\Software, in no order that counts. It only reads,
/// and may be left lying between two steps. Where the registry changes meanwhile a key may come
/// twice; one whose values have come since, perhaps not at all.
class KeyWalk {
 public:
  virtual ~KeyWalk() = default;
  /// Goes on to the next key that has values, and not so many that looking at them takes its time;
  /// false behind the last.
  virtual bool Next(WalkedKey& key) = 0;
};
std::unique_ptr<KeyWalk> WalkKeys();

}  // namespace torvane
