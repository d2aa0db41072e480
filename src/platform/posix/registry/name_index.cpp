#include "platform/posix/registry/name_index.h"

#include <bit>
#include <utility>

namespace torvane::posix {
namespace {

constexpr std::size_t kFewest = 16;

}  // namespace

void NameIndex::put(const Place& place) {
  std::size_t at = home(place.hash);
  while (places_[at].entry != kNone) at = next(at);
  places_[at] = place;
}

void NameIndex::grow() {
  const std::size_t size = places_.empty() ? kFewest : places_.size() * 2;
  const std::vector<Place> old = std::exchange(places_, std::vector<Place>(size));
  shift_ = 32U - static_cast<unsigned>(std::countr_zero(size));
  for (const Place& place : old)
    if (place.entry != kNone) put(place);
}

void NameIndex::add(std::uint32_t hash, std::uint32_t entry) {
  if ((used_ + 1) * 3 > places_.size() * 2) grow();
  put({hash, entry});
  ++used_;
}

/// What stands behind the gap moves up where its search would end at it.
void NameIndex::erase(std::uint32_t hash, std::uint32_t entry) {
  std::size_t gap = home(hash);
  while (places_[gap].entry != entry) gap = next(gap);
  const std::size_t mask = places_.size() - 1;
  for (std::size_t at = next(gap); places_[at].entry != kNone; at = next(at)) {
    const std::size_t way = (at - home(places_[at].hash)) & mask;
    if (way < ((at - gap) & mask)) continue;
    places_[gap] = places_[at];
    gap = at;
  }
  places_[gap] = {};
  --used_;
}

}  // namespace torvane::posix
