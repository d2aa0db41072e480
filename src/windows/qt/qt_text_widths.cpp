#include "windows/qt/qt_text_widths.h"

#include <algorithm>

namespace torvane {
namespace {

constexpr std::size_t kUnits = 0x10000;
constexpr std::size_t kCandidates = 16;

}  // namespace

TextWidths::TextWidths(const QFont& font) : metrics_(font), widths_(kUnits, -1.0F) {}

qreal TextWidths::sum(const QString& text) {
  qreal sum = 0;
  for (const QChar unit : text) {
    float& width = widths_[unit.unicode()];
    // Half a pair has no width of its own; half an M is more than any character's half.
    if (width < 0) {
      width = static_cast<float>(unit.isSurrogate() ? metrics_.horizontalAdvance(QLatin1Char('M'))
                                                    : metrics_.horizontalAdvance(unit));
    }
    sum += static_cast<qreal>(width);
  }
  return sum;
}

void Widest::offer(qreal width, int place) {
  const auto narrower = [](const Candidate& a, const Candidate& b) { return a.width > b.width; };
  if (heap_.size() == kCandidates) {
    if (width <= heap_.front().width) return;
    std::ranges::pop_heap(heap_, narrower);
    heap_.pop_back();
  }
  heap_.push_back({width, place});
  std::ranges::push_heap(heap_, narrower);
}

std::vector<int> Widest::places() const {
  std::vector<int> places;
  for (const Candidate& candidate : heap_) places.push_back(candidate.place);
  return places;
}

}  // namespace torvane
