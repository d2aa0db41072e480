#include "platform/posix/disk/earlier_texts.h"

#include <utility>

#include "platform/posix/disk/forget.h"

namespace torvane::posix {
namespace {

constexpr std::size_t kMostBytes = std::size_t{64} << 20U;
/// What an entry takes beside its texts.
constexpr std::size_t kEntry = 128;

const AtForget kForgetTexts([] { EarlierTexts::Instance() = {}; });

}  // namespace

EarlierTexts& EarlierTexts::Instance() {
  static EarlierTexts texts;
  return texts;
}

void EarlierTexts::keep(std::string part, std::string text) {
  const auto sizeOf = [](const Entry& entry) {
    return entry.part.size() + entry.text.size() + kEntry;
  };
  entries_.push_front({std::move(part), std::move(text)});
  bytes_ += sizeOf(entries_.front());
  while (bytes_ > kMostBytes) {
    bytes_ -= sizeOf(entries_.back());
    entries_.pop_back();
  }
}

}  // namespace torvane::posix
