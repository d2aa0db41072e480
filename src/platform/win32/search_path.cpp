// Windows refuses a path of MAX_PATH units and more, unless it says by its beginning that it has
// been made full and plain already. Making it so takes time by the square of what falls out of it,
// so that is taken out before.
#include <algorithm>
#include <vector>

#include "platform/extras.h"
#include "platform/winapi.h"

namespace torvane {
namespace {

using View = std::u16string_view;

bool IsSeparator(char16_t unit) {
  return unit == u'\\' || unit == u'/';
}

std::vector<View> PartsOf(View path) {
  std::vector<View> parts;
  while (!path.empty()) {
    const auto end = std::find_if(path.begin(), path.end(), IsSeparator) - path.begin();
    parts.push_back(path.substr(0, static_cast<std::size_t>(end)));
    path.remove_prefix(std::min(static_cast<std::size_t>(end) + 1, path.size()));
  }
  return parts;
}

// What ".." doesn't lead out of: a drive, or the first two parts of a share's or a device's path.
std::size_t RootLength(View path) {
  if (path.size() > 1 && path[1] == u':') return path.size() > 2 && IsSeparator(path[2]) ? 3 : 2;
  if (path.size() < 2 || !IsSeparator(path[0])) return 0;
  if (!IsSeparator(path[1])) return 1;
  const auto server = std::find_if(path.begin() + 2, path.end(), IsSeparator);
  const auto share =
      server == path.end() ? server : std::find_if(server + 1, path.end(), IsSeparator);
  return static_cast<std::size_t>(share - path.begin()) + (share == path.end() ? 0 : 1);
}

// Without empty parts, "." and ".." where it is known what that leads back to.
std::u16string Shortened(View path) {
  // No current folder lies deeper.
  constexpr std::size_t kDeepest = MAX_PATH;
  const std::size_t root = RootLength(path);
  const bool isFull = root > 0 && IsSeparator(path[root - 1]);
  std::vector<View> kept;
  std::size_t above = 0;  // so many lead out of a relative path
  for (const View part : PartsOf(path.substr(root))) {
    if (part.empty() || part == u".") continue;
    if (part != u"..") {
      kept.push_back(part);
    } else if (kept.size() > above) {
      kept.pop_back();
    } else if (!isFull && above < kDeepest) {
      kept.push_back(part);
      ++above;
    }
  }
  std::u16string shortened(path.substr(0, root));
  for (const View part : kept) {
    if (shortened.size() > root) shortened += u'\\';
    shortened += part;
  }
  if (path.size() > root && IsSeparator(path.back()) && !kept.empty()) shortened += u'\\';
  return shortened;
}

}  // namespace

std::u16string PathForSearch(const std::u16string& path) {
  constexpr std::size_t kLongest = 32'767;
  // Making it full may add a drive.
  if (path.size() < MAX_PATH - 3) return path;
  const bool isVerbatim = path.starts_with(u"\\\\?\\");
  const std::u16string shortened = isVerbatim ? path : Shortened(path);
  // Nothing has a longer path, and nothing is found by an empty one.
  if (shortened.size() > kLongest) return {};
  if (isVerbatim) return path;
  const std::u16string full = TextOfCall([&](WCHAR* buffer, DWORD size) {
    return GetFullPathNameW(Wide(shortened), size, buffer, nullptr);
  });
  if (full.starts_with(u"\\\\")) return u"\\\\?\\UNC" + full.substr(1);
  return full.empty() ? shortened : u"\\\\?\\" + full;
}

}  // namespace torvane
