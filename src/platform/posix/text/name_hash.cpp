#include "platform/posix/text/name_hash.h"

#include <random>

namespace torvane::posix {
namespace {

std::uint64_t Draw() {
  std::random_device device;
  return (std::uint64_t{device()} << 32U) | device();
}

}  // namespace

const std::uint64_t NameHash::kPlace = Draw() % (kPrime - 1) + 1;
const std::uint64_t NameHash::kFactor = Draw() | 1U;

std::uint32_t HashName(std::u16string_view name) {
  NameHash hash;
  for (const char16_t unit : name) hash.add(unit);
  return hash.value();
}

}  // namespace torvane::posix
