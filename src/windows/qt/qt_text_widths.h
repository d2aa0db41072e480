// The widest of very many texts, without laying each of them out.
#pragma once

#include <QFontMetricsF>
#include <QString>
#include <vector>

namespace torvane {

/// Adds up the widths of single characters, measured once each. What ligatures, kerning and joined
/// scripts change is small against the whole, so the widest texts by this sum are the candidates
/// for the widest text.
class TextWidths {
 public:
  explicit TextWidths(const QFont& font);
  qreal sum(const QString& text);

 private:
  QFontMetricsF metrics_;
  std::vector<float> widths_;  ///< by UTF-16 unit, negative where not yet measured
};

/// Keeps the places of the few widest texts of those offered.
class Widest {
 public:
  void offer(qreal width, int place);
  /// In no order.
  std::vector<int> places() const;

 private:
  struct Candidate {
    qreal width;
    int place;
  };
  std::vector<Candidate> heap_;  ///< the narrowest first
};

}  // namespace torvane
