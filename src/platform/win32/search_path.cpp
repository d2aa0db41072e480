// Windows refuses a path of MAX_PATH units and more, unless it says by its beginning that it has
// been made full and plain already.
#include "platform/extras.h"
#include "platform/winapi.h"

namespace torvane {

std::u16string PathForSearch(const std::u16string& path) {
  // Making it full may add a drive.
  if (path.size() < MAX_PATH - 3 || path.starts_with(u"\\\\?\\")) return path;
  const std::u16string full = TextOfCall([&](WCHAR* buffer, DWORD size) {
    return GetFullPathNameW(Wide(path), size, buffer, nullptr);
  });
  if (full.starts_with(u"\\\\")) return u"\\\\?\\UNC" + full.substr(1);
  return full.empty() ? path : u"\\\\?\\" + full;
}

}  // namespace torvane
