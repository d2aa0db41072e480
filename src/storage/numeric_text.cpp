#include "storage/numeric_text.h"

#include <algorithm>

// A scan from both ends: what may stand around a number is taken off first, once each; what is left
// must be digits with one point, commas among the whole digits, and an exponent.

namespace torvane {
namespace {

constexpr TextView kBlanks = u" \t\n\v\f\r";

bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

TextView Trim(TextView text) {
  const auto begin = text.find_first_not_of(kBlanks);
  if (begin == TextView::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// &HFF and &O17, with nothing else around but blanks.
bool IsRadixNumber(TextView text) {
  if (text.size() < 3 || text[0] != u'&') return false;
  const TextView digits = text.substr(2);
  const TextView allowed = text[1] == u'H' || text[1] == u'h'   ? u"0123456789ABCDEFabcdef"
                           : text[1] == u'O' || text[1] == u'o' ? u"01234567"
                                                                : u"";
  return digits.find_first_not_of(allowed) == TextView::npos;
}

// Takes signs, a currency sign and parentheses off both ends, each kind once.
class Surroundings {
 public:
  explicit Surroundings(TextView text) : rest_(Trim(text)) {}

  /// What stands between them.
  TextView strip() {
    while (takeFront() || takeBack()) rest_ = Trim(rest_);
    return rest_;
  }

 private:
  bool takeFront() {
    if (rest_.empty()) return false;
    if (rest_.front() == u'(' && rest_.back() == u')' && !signed_ && rest_.size() > 2) {
      signed_ = true;
      rest_ = rest_.substr(1, rest_.size() - 2);
      return true;
    }
    if (!takes(rest_.front())) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool takeBack() {
    if (rest_.empty() || !takes(rest_.back())) return false;
    rest_.remove_suffix(1);
    return true;
  }

  bool takes(char16_t c) {
    bool* seen = c == u'+' || c == u'-' ? &signed_ : c == u'$' ? &currency_ : nullptr;
    if (!seen || *seen) return false;
    *seen = true;
    return true;
  }

  TextView rest_;
  bool signed_ = false;
  bool currency_ = false;
};

bool IsExponent(TextView text) {
  if (!text.empty() && (text.front() == u'+' || text.front() == u'-')) text.remove_prefix(1);
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

bool IsMantissa(TextView text) {
  const auto point = text.find(u'.');
  const TextView whole = text.substr(0, point);
  const TextView fraction = point == TextView::npos ? TextView() : text.substr(point + 1);
  if (whole.empty() && fraction.empty()) return false;
  if (!whole.empty() && whole.front() == u',') return false;
  return std::all_of(whole.begin(), whole.end(),
                     [](char16_t c) { return IsDigit(c) || c == u','; }) &&
         std::all_of(fraction.begin(), fraction.end(), IsDigit);
}

}  // namespace

bool ReadsAsNumber(TextView text) {
  if (IsRadixNumber(Trim(text))) return true;
  const TextView number = Surroundings(text).strip();
  const auto exponent = number.find_first_of(u"EeDd");
  if (exponent != TextView::npos && !IsExponent(number.substr(exponent + 1))) return false;
  return IsMantissa(number.substr(0, exponent));
}

}  // namespace torvane
