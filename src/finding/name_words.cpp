#include "finding/name_words.h"

#include <algorithm>
#include <array>

namespace torvane {
namespace {

// "Plastic" isn't last, and "Prototyped" isn't typed.
constexpr std::array<WordMark, 5> kRecentMarks = {{{u"recent", WordPlace::Edge},
                                                   {u"mru", WordPlace::Edge},
                                                   {u"history", WordPlace::Edge},
                                                   {u"last", WordPlace::Front},
                                                   {u"typed", WordPlace::Front}}};

// An account is no count.
constexpr std::array<WordMark, 5> kCountMarks = {{{u"count", WordPlace::Front},
                                                  {u"number", WordPlace::Front},
                                                  {u"num", WordPlace::Front},
                                                  {u"total", WordPlace::Front},
                                                  {u"entries", WordPlace::Front}}};

bool IsUpper(char16_t unit) {
  return unit >= u'A' && unit <= u'Z';
}

bool IsLetter(char16_t unit) {
  return IsUpper(unit) || (unit >= u'a' && unit <= u'z') || unit >= 0x80;
}

// Whether a word ends and another begins, or none does, between two places of a name.
bool IsBoundary(TextView name, std::size_t at) {
  if (at == 0 || at == name.size()) return true;
  if (!IsLetter(name[at - 1]) || !IsLetter(name[at])) return true;
  if (IsUpper(name[at])) {
    // "MRUList" is MRU and List.
    return !IsUpper(name[at - 1]) ||
           (at + 1 < name.size() && IsLetter(name[at + 1]) && !IsUpper(name[at + 1]));
  }
  return false;
}

bool StandsAt(TextView name, std::size_t at, const WordMark& mark) {
  const std::size_t end = at + mark.text.size();
  for (std::size_t inside = at + 1; inside < end; ++inside) {
    if (IsBoundary(name, inside)) return false;
  }
  return IsBoundary(name, at) || (mark.place == WordPlace::Edge && IsBoundary(name, end));
}

}  // namespace

bool HasMark(TextView name, std::span<const WordMark> marks) {
  Text lower(name);
  for (char16_t& unit : lower) {
    if (IsUpper(unit)) unit = static_cast<char16_t>(unit + (u'a' - u'A'));
  }
  return std::any_of(marks.begin(), marks.end(), [&](const WordMark& mark) {
    for (auto at = lower.find(mark.text); at != Text::npos; at = lower.find(mark.text, at + 1)) {
      if (StandsAt(name, at, mark)) return true;
    }
    return false;
  });
}

bool SaysRecent(TextView name) {
  return HasMark(name, kRecentMarks);
}

bool SaysCount(TextView name, TextView prefix) {
  const bool isOfPrefix = !prefix.empty() && name.size() > prefix.size() &&
                          SameName(name.substr(0, prefix.size()), prefix);
  if (isOfPrefix && HasMark(name.substr(prefix.size()), kCountMarks)) return true;
  return HasMark(name, kCountMarks);
}

}  // namespace torvane
