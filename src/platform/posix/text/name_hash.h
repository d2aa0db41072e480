// A hash of names without case that nobody can foresee: whoever writes a file can't choose names
// that fall together. It is the name taken as a polynomial at a secret place, modulo a prime, of
// which the upper bits of one more secret product are given: for any two names the chance to be
// equal is their length in 2^61, whatever they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/posix/text/letter_case.h"

namespace torvane::posix {

class NameHash {
 public:
  void add(char16_t unit) {
    __extension__ using Wide = unsigned __int128;
    const Wide product = Wide{state_} * kPlace + (std::uint64_t{FoldCase(unit)} + 1);
    const auto low = static_cast<std::uint64_t>(product) & kPrime;
    const std::uint64_t sum = low + static_cast<std::uint64_t>(product >> 61U);
    state_ = sum >= kPrime ? sum - kPrime : sum;
  }
  /// Of the units so far. The upper bits are as good as the lower ones.
  std::uint32_t value() const { return static_cast<std::uint32_t>((state_ * kFactor) >> 32U); }

 private:
  static constexpr std::uint64_t kPrime = (std::uint64_t{1} << 61U) - 1;
  // Drawn when the program starts.
  static const std::uint64_t kPlace;
  static const std::uint64_t kFactor;

  std::uint64_t state_ = 0;
};

std::uint32_t HashName(std::u16string_view name);

/// For the standard's tables of names.
struct NameHasher {
  std::size_t operator()(std::u16string_view name) const { return HashName(name); }
};

}  // namespace torvane::posix
