#include "readers/entry_names.h"

#include <algorithm>
#include <set>

namespace torvane {
namespace {

constexpr std::size_t kMostDigits = 9;

bool IsDigits(TextView text) {
  return !text.empty() && text.find_first_not_of(u"0123456789") == TextView::npos;
}

EntryNames Numbers(TextView prefix, TextView first) {
  if (!IsDigits(first) || first.size() > kMostDigits) return {};
  EntryNames names{EntryNames::Kind::Numbered, Text(prefix)};
  for (const char16_t digit : first) names.first = names.first * 10 + (digit - u'0');
  if (first.front() == u'0') names.digits = first.size();
  return names;
}

bool IsSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDFFF;
}

// One character each, from A on. Names compare without case, so what would meet an earlier one
// again, as the small letters do, is left out.
std::vector<Text> LetterNames(std::size_t count) {
  std::vector<Text> names;
  std::set<Text, NameOrder> taken;
  for (char16_t letter = u'A'; names.size() < count && letter != 0xFFFF; ++letter) {
    Text name(1, letter);
    if (!IsSurrogate(letter) && taken.insert(name).second) {
      names.push_back(std::move(name));
    }
  }
  return names;
}

}  // namespace

Text EntryNames::Numbered(std::int64_t n) const {
  if (kind != Kind::Numbered) return {};
  Text number = Decimal(first + n - 1);
  if (number.size() < digits) number.insert(0, digits - number.size(), u'0');
  return prefix + number;
}

std::vector<Text> EntryNames::First(std::size_t count) const {
  if (kind == Kind::Letters) return LetterNames(count);
  std::vector<Text> names;
  if (kind != Kind::Numbered) return names;
  names.reserve(count);
  for (std::size_t n = 1; n <= count; ++n) names.push_back(Numbered(static_cast<std::int64_t>(n)));
  return names;
}

EntryNames NamesOfRow(NameRule rule, const MruEntry& row) {
  switch (rule) {
    case NameRule::Own:
      return {EntryNames::Kind::Own};
    case NameRule::Letters:
      return NamesOfForm(row.ValuePrefix + row.FirstIndex);
    default: {
      const bool fillsTheField = row.ValuePrefix == kNone ||
                                 (row.ValuePrefix == row.FirstIndex && IsDigits(row.ValuePrefix));
      return Numbers(fillsTheField ? TextView() : row.ValuePrefix, row.FirstIndex);
    }
  }
}

EntryNames NamesOfForm(TextView form) {
  if (form == u"a*") return {EntryNames::Kind::Letters};
  const auto lastOther = form.find_last_not_of(u"0123456789");
  const std::size_t split = lastOther == TextView::npos ? 0 : lastOther + 1;
  // A form of one digit twice has that digit in place of a prefix.
  if (split == 0 && form.size() == 2 && form[0] == form[1]) return Numbers({}, form.substr(1));
  return Numbers(form.substr(0, split), form.substr(split));
}

}  // namespace torvane
