#include "storage/clsParse.h"

namespace torvane {
namespace {

enum class ScanState { ElementStart, PlainText, InQuotes, BehindQuote, Failed };

constexpr char16_t kQuote = u'"';

// Behind a closing quote only a separator, the end or another quote may follow.
ScanState Next(ScanState state, char16_t character) {
  if (state == ScanState::InQuotes) {
    return character == kQuote ? ScanState::BehindQuote : ScanState::InQuotes;
  }
  if (character == kQuote) return ScanState::InQuotes;
  return state == ScanState::BehindQuote ? ScanState::Failed : ScanState::PlainText;
}

}  // namespace

std::int32_t clsParse::Initialise(TextView Source, TextView Separators) {
  source_ = Source;
  boundaries_.assign(1, 0);
  if (Separators.size() == 1 && Source.find(kQuote) == TextView::npos) {
    return SplitUnquoted(Separators.front());
  }
  ScanState state = ScanState::ElementStart;
  std::int32_t position = 0;
  for (const char16_t character : source_) {
    ++position;
    const bool separates = Separators.find(character) != TextView::npos;
    if (!separates) {
      state = Next(state, character);
    } else if (state != ScanState::InQuotes) {
      boundaries_.push_back(position);
      state = ScanState::ElementStart;
    }
    if (state == ScanState::Failed) return 0;
  }
  boundaries_.push_back(position + 1);
  return static_cast<std::int32_t>(boundaries_.size()) - 1;
}

// Without quotes each separator separates.
std::int32_t clsParse::SplitUnquoted(char16_t separator) {
  for (std::size_t at = 0; at < source_.size(); ++at) {
    if (source_[at] == separator) boundaries_.push_back(static_cast<std::int32_t>(at) + 1);
  }
  boundaries_.push_back(static_cast<std::int32_t>(source_.size()) + 1);
  return static_cast<std::int32_t>(boundaries_.size()) - 1;
}

Text clsParse::ElementAsString(std::int32_t index) const {
  if (index < 1 || static_cast<std::size_t>(index) >= boundaries_.size()) return {};
  const auto slot = static_cast<std::size_t>(index);
  const std::int32_t begin = boundaries_[slot - 1];
  const std::int32_t end = boundaries_[slot] - 1;
  return source_.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

}  // namespace torvane
