// Wine keeps no short names: it works each out from the long one, so that whoever knows how finds
// the file that a stored short name means.
#include "platform/posix/paths/short_name.h"

#include <algorithm>
#include <cstdint>

#include "platform/posix/text/letter_case.h"

namespace torvane::posix {
namespace {

constexpr std::size_t kLongestBase = 8;
constexpr std::size_t kLongestExtension = 3;
constexpr std::size_t kKept = 4;  ///< characters of the long name
constexpr std::u16string_view kNotShort = u"*?<>|\"+=,;[] :/\\";

bool IsShortUnit(char16_t unit) {
  return unit < 0x80 && kNotShort.find(unit) == kNotShort.npos;
}

char16_t ShortUnit(char16_t unit) {
  return IsShortUnit(unit) && unit != u'~' && unit != u'.' ? UnfoldCase(unit) : u'_';
}

std::uint16_t HashOf(std::u16string_view name) {
  std::uint16_t hash = 0xBEEF;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const unsigned following = i + 1 < name.size() ? FoldCase(name[i + 1]) : 0U;
    const unsigned before = hash;
    hash = static_cast<std::uint16_t>((before << 3U) ^ (before >> 5U) ^ FoldCase(name[i]) ^
                                      (following << 8U));
  }
  return hash;
}

}  // namespace

bool IsShortName(std::u16string_view name) {
  const std::size_t point = std::min(name.find(u'.'), name.size());
  const std::u16string_view extension = name.substr(std::min(point + 1, name.size()));
  if (name == u"." || name == u"..") return true;
  if (point == 0 || point > kLongestBase || extension.size() > kLongestExtension) return false;
  if (point < name.size() && extension.empty()) return false;
  return extension.find(u'.') == extension.npos &&
         std::all_of(name.begin(), name.end(), IsShortUnit);
}

bool MayBeMadeShort(std::u16string_view name) {
  return name.size() >= kLongestBase && name[kKept] == u'~' && IsShortName(name);
}

std::u16string ShortName(std::u16string_view name) {
  constexpr std::u16string_view kHashLetters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ012345";
  // A point at either end of the name begins no extension.
  std::size_t point = name.size() < 2 ? name.npos : name.rfind(u'.', name.size() - 2);
  if (point == 0) point = name.npos;
  std::u16string made;
  for (const char16_t unit : name.substr(0, std::min(point, kKept))) made += ShortUnit(unit);
  made.resize(kKept + 1, u'~');
  const unsigned hash = HashOf(name);
  for (const unsigned shift : {10U, 5U, 0U}) made += kHashLetters[(hash >> shift) & 0x1FU];
  if (point == name.npos) return made;
  made += u'.';
  for (const char16_t unit : name.substr(point + 1, kLongestExtension)) made += ShortUnit(unit);
  return made;
}

}  // namespace torvane::posix
