// Finds numbered entries by their names' hashes: the keys of a hive, the values of a key. A table
// with open addressing; the names stay with their owner.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace torvane::posix {

class NameIndex {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  /// The entry with this hash that `is` says true of, kNone where there is none.
  template <typename Is>
  std::uint32_t find(std::uint32_t hash, Is is) const {
    if (places_.empty()) return kNone;
    std::size_t at = home(hash);
    while (places_[at].entry != kNone && !(places_[at].hash == hash && is(places_[at].entry)))
      at = next(at);
    return places_[at].entry;
  }
  /// Adds an entry that isn't there; kNone is none.
  void add(std::uint32_t hash, std::uint32_t entry);
  /// Removes an entry that is there.
  void erase(std::uint32_t hash, std::uint32_t entry);

 private:
  struct Place {
    std::uint32_t hash = 0;
    std::uint32_t entry = kNone;
  };

  std::size_t home(std::uint32_t hash) const { return hash >> shift_; }
  std::size_t next(std::size_t at) const { return (at + 1) & (places_.size() - 1); }
  void put(const Place& place);
  void grow();

  std::vector<Place> places_;  ///< a power of two of them, at most two thirds in use
  unsigned shift_ = 0;         ///< from a hash to the place where its search begins
  std::size_t used_ = 0;
};

}  // namespace torvane::posix
