#include "storage/paths.h"

#include <optional>

#include "platform/winapi.h"

namespace torvane {
namespace {

std::optional<WIN32_FIND_DATAA> FindEntry(const Text& path) {
  WIN32_FIND_DATAA data{};
  const HANDLE search = FindFirstFileA(ToAnsi(path).c_str(), &data);
  if (search == INVALID_HANDLE_VALUE) return std::nullopt;
  FindClose(search);
  return data;
}

}  // namespace

Text AddBackslash(const Text& Path) {
  return Path.ends_with(u'\\') ? Path : Path + u'\\';
}

Text RemoveBackslash(Text Path) {
  const auto begin = Path.find_first_not_of(u' ');
  if (begin == Text::npos) return {};
  Path = Path.substr(begin, Path.find_last_not_of(u' ') - begin + 1);
  if (Path.ends_with(u'\\')) Path.pop_back();
  return Path;
}

Text GetLongPath(Text Path) {
  Path = AddBackslash(Path);
  Text result;
  // From the fourth character on, which jumps over the backslash behind a drive letter.
  for (auto end = Path.find(u'\\', 3); end != Text::npos; end = Path.find(u'\\', end + 1)) {
    const auto entry = FindEntry(Path.substr(0, end));
    if (!entry) return Path;
    result += u'\\' + FromAnsi(entry->cFileName);
  }
  return Path.substr(0, 2) + result;
}

bool FileExists(const Text& Path) {
  return FindEntry(Path).has_value();
}

bool FolderExists(Text& Path) {
  Path = RemoveBackslash(Path);
  const auto entry = FindEntry(Path);
  return entry && (entry->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

Text GetSystemDrive() {
  std::string buffer(255, ' ');
  GetSystemDirectoryA(buffer.data(), static_cast<UINT>(buffer.size()));
  return StripAtNull(FromAnsi(buffer)).substr(0, 3);
}

Text GetWindowsFolder() {
  std::string buffer(200, '\0');
  GetWindowsDirectoryA(buffer.data(), static_cast<UINT>(buffer.size()));
  return StripAtNull(FromAnsi(buffer));
}

}  // namespace torvane
