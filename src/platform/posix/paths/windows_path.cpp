// Windows cleans a path before it opens anything: slashes turn, "." and ".." go, trailing points
// and blanks fall off, some names are devices. Behind \\?\ nothing of this happens.
#include "platform/posix/paths/windows_path.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/posix/text/letter_case.h"

namespace torvane::posix {
namespace {

constexpr std::u16string_view kVerbatim = u"\\\\?\\";
constexpr std::u16string_view kUnixRoot = u"unix";
constexpr std::u16string_view kReserved = u"<>:\"/\\|?*";

bool IsSeparator(char16_t unit) {
  return unit == u'\\' || unit == u'/';
}

bool IsDriveLetter(char16_t unit) {
  const char16_t folded = FoldCase(unit);
  return folded >= u'a' && folded <= u'z';
}

bool StartsWithDrive(std::u16string_view path) {
  return path.size() >= 2 && path[1] == u':' && IsDriveLetter(path[0]);
}

/// The parts between backslashes as they stand.
void SplitVerbatim(std::u16string_view rest, PathParts& path) {
  path.closed = rest.empty() || rest.ends_with(u'\\');
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(u'\\'), rest.size());
    if (end > 0) path.parts.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

std::optional<PathParts> SplitVerbatimPath(std::u16string_view path) {
  PathParts result;
  if (StartsWithDrive(path) && (path.size() == 2 || path[2] == u'\\')) {
    result.drive = FoldCase(path[0]);
    SplitVerbatim(path.substr(2), result);
    return result;
  }
  const std::u16string_view root = path.substr(0, kUnixRoot.size());
  const std::u16string_view rest = path.substr(root.size());
  if (FoldCase(root) != kUnixRoot || !rest.starts_with(u'\\')) return std::nullopt;
  SplitVerbatim(rest, result);
  return result;
}

void AddPart(std::u16string_view part, bool last, std::vector<std::u16string>& parts) {
  if (part.empty() || part == u".") return;
  if (part == u"..") {
    if (!parts.empty()) parts.pop_back();
    return;
  }
  if (last) {
    part = part.substr(0, part.find_last_not_of(u" .") + 1);
  } else if (part.ends_with(u'.')) {
    part.remove_suffix(1);
  }
  if (!part.empty()) parts.emplace_back(part);
}

/// The places in a pattern that a part of a name has led to.
class PatternPlaces {
 public:
  explicit PatternPlaces(std::u16string_view pattern)
      : pattern_(pattern), reached_(pattern.size() + 1, false) {
    reached_[0] = true;
  }

  /// Passes what needs no character where the next one is `next`, 0 for the name's end.
  void passEmpty(char16_t next) {
    for (std::size_t i = first_; i <= last_ && i < pattern_.size(); ++i) {
      if (!reached_[i] || !fitsNothing(i, next)) continue;
      reached_[i + 1] = true;
      last_ = std::max(last_, i + 1);
    }
  }

  void take(char16_t unit) {
    last_ = std::min(last_ + 1, pattern_.size());
    for (std::size_t i = last_ + 1; i-- > first_;) {
      const bool stays = i < pattern_.size() && pattern_[i] == u'*' && reached_[i];
      reached_[i] = stays || (i > 0 && reached_[i - 1] && fits(pattern_[i - 1], unit));
    }
    while (first_ <= last_ && !reached_[first_]) ++first_;
  }
  bool any() const { return first_ <= last_; }

  bool atEnd() const { return reached_.back(); }

 private:
  static bool fits(char16_t place, char16_t unit) {
    return place == u'?' || (place != u'*' && FoldCase(place) == FoldCase(unit));
  }

  bool fitsNothing(std::size_t place, char16_t next) const {
    const char16_t unit = pattern_[place];
    if (unit == u'*') return true;
    if (unit == u'?') return next == 0 || next == u'.';
    const bool beforeWildcard =
        place + 1 < pattern_.size() && (pattern_[place + 1] == u'*' || pattern_[place + 1] == u'?');
    return unit == u'.' && next == 0 && beforeWildcard;
  }

  std::u16string_view pattern_;
  std::vector<bool> reached_;
  // None is reached before the one or behind the other.
  std::size_t first_ = 0;
  std::size_t last_ = 0;
};

/// Whether each half of a surrogate pair stands beside its other half.
bool HasWholePairs(std::u16string_view text) {
  const auto isHalf = [&](std::size_t at, char16_t range) {
    return at < text.size() && (text[at] & 0xFC00U) == range;
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isHalf(i, 0xDC00)) return false;
    if (isHalf(i, 0xD800) && !isHalf(++i, 0xDC00)) return false;
  }
  return true;
}

}  // namespace

std::optional<PathParts> SplitWindowsPath(std::u16string_view path) {
  if (path.starts_with(kVerbatim)) return SplitVerbatimPath(path.substr(kVerbatim.size()));
  PathParts result;
  result.drive = u'c';
  if (path.find_first_not_of(u' ') == std::u16string_view::npos) return std::nullopt;
  if (StartsWithDrive(path)) {
    result.drive = FoldCase(path[0]);
    path.remove_prefix(2);
  } else if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1])) {
    return std::nullopt;
  }
  // What comes down to nothing is the root, and only these three forms mean the current folder.
  const bool current = path.empty() || path == u"." || path == u"..";
  result.closed = !path.empty() && IsSeparator(path.back());
  while (!path.empty()) {
    const auto* end = std::find_if(path.begin(), path.end(), IsSeparator);
    const auto length = static_cast<std::size_t>(end - path.begin());
    AddPart(path.substr(0, length), length == path.size(), result.parts);
    path.remove_prefix(std::min(length + 1, path.size()));
  }
  if (result.parts.empty()) result.closed = !current;
  result.device = !result.closed && !result.parts.empty() && IsDeviceName(result.parts.back());
  return result;
}

bool IsFileName(std::u16string_view part) {
  // Half of a pair has no bytes that a name of the host could be made of.
  return !part.empty() && HasWholePairs(part) && part != u"." && part != u".." &&
         std::none_of(part.begin(), part.end(), [](char16_t unit) {
           // Most letters and all digits lie between the reserved ones.
           const bool mayBe = unit <= u'?' || unit == u'\\' || unit == u'|';
           return unit < u' ' || (mayBe && kReserved.find(unit) != kReserved.npos);
         });
}

bool IsDeviceName(std::u16string_view part) {
  constexpr std::array<std::u16string_view, 4> kNames{u"con", u"prn", u"aux", u"nul"};
  constexpr std::array<std::u16string_view, 2> kNumbered{u"com", u"lpt"};
  if (part.size() < 3) return false;
  // Few names begin like one of them.
  constexpr std::u16string_view kFirst = u"CPANLcpanl";
  if (kFirst.find(part.front()) == kFirst.npos) return false;
  std::u16string_view base = part.substr(0, part.find_first_of(u".:"));
  base = base.substr(0, base.find_last_not_of(u' ') + 1);
  if (base.size() != 3 && base.size() != 4) return false;
  const std::u16string name = FoldCase(base);
  if (name.size() == 3) return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
  const std::u16string_view front = std::u16string_view(name).substr(0, 3);
  return name[3] >= u'1' && name[3] <= u'9' &&
         std::find(kNumbered.begin(), kNumbered.end(), front) != kNumbered.end();
}

bool IsReachableName(std::u16string_view name) {
  return IsFileName(name) && name.back() != u'.' && name.back() != u' ' && !IsDeviceName(name);
}

bool FitsPattern(std::u16string_view name, std::u16string_view pattern) {
  PatternPlaces places(pattern);
  for (const char16_t unit : name) {
    places.passEmpty(unit);
    places.take(unit);
    if (!places.any()) return false;
  }
  places.passEmpty(0);
  return places.atEnd();
}

}  // namespace torvane::posix
