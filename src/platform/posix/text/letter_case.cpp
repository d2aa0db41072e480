// Windows and Wine compare names by a table of capital letters in which every letter has one
// partner or none. The C library's tables say more: several small letters may share a capital.
#include "platform/posix/text/letter_case.h"

#include <clocale>
#include <cwctype>

#include <algorithm>
#include <vector>

#include "platform/posix/text/last_error.h"
#include "platform/winapi.h"

namespace torvane::posix {
namespace {

constexpr std::size_t kUnits = 0x10000;

/// The partners of all units, made once.
struct CaseTables {
  CaseTables();
  std::vector<char16_t> small;
  std::vector<char16_t> capital;
};

CaseTables::CaseTables() : small(kUnits), capital(kUnits) {
  // A locale of its own leaves the process's alone; without it there is a case in ASCII only.
  const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  const auto lower = [locale](wint_t unit) {
    return locale != nullptr ? towlower_l(unit, locale) : std::towlower(unit);
  };
  const auto upper = [locale](wint_t unit) {
    return locale != nullptr ? towupper_l(unit, locale) : std::towupper(unit);
  };
  for (std::size_t i = 0; i < kUnits; ++i) small[i] = capital[i] = static_cast<char16_t>(i);
  for (wint_t unit = 0; unit < kUnits; ++unit) {
    const wint_t partner = lower(unit);
    if (partner == unit || partner >= kUnits || upper(partner) != unit) continue;
    small[unit] = static_cast<char16_t>(partner);
    capital[partner] = static_cast<char16_t>(unit);
  }
  if (locale != nullptr) freelocale(locale);
}

const CaseTables& Tables() {
  static const CaseTables tables;
  return tables;
}

std::u16string_view Input(LPCWSTR text, int count) {
  const std::u16string_view::size_type length =
      count < 0 ? std::u16string_view(text).size() : static_cast<std::size_t>(count);
  return {text, length};
}

}  // namespace

char16_t FoldBeyondAscii(char16_t unit) {
  return Tables().small[unit];
}

char16_t UnfoldCase(char16_t unit) {
  return Tables().capital[unit];
}

std::u16string FoldCase(std::u16string_view text) {
  std::u16string folded(text);
  for (char16_t& unit : folded) unit = FoldCase(unit);
  return folded;
}

}  // namespace torvane::posix

using namespace torvane::posix;

DWORD CharLowerBuffW(LPWSTR text, DWORD count) {
  for (DWORD i = 0; i < count; ++i) text[i] = FoldCase(text[i]);
  return count;
}

int CompareStringOrdinal(LPCWSTR left, int leftCount, LPCWSTR right, int rightCount,
                         BOOL ignoreCase) {
  if (left == nullptr || right == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const auto form = [ignoreCase](char16_t unit) {
    return ignoreCase != FALSE ? UnfoldCase(unit) : unit;
  };
  const std::u16string_view first = Input(left, leftCount);
  const std::u16string_view second = Input(right, rightCount);
  const auto [a, b] =
      std::mismatch(first.begin(), first.end(), second.begin(), second.end(),
                    [&](char16_t one, char16_t other) { return form(one) == form(other); });
  if (a == first.end() || b == second.end()) {
    if (first.size() == second.size()) return CSTR_EQUAL;
    return first.size() < second.size() ? CSTR_LESS_THAN : CSTR_GREATER_THAN;
  }
  return form(*a) < form(*b) ? CSTR_LESS_THAN : CSTR_GREATER_THAN;
}
