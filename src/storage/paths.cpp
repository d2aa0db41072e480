#include "storage/paths.h"

#include <optional>

#include "platform/extras.h"
#include "platform/winapi.h"

namespace torvane {
namespace {

std::optional<WIN32_FIND_DATAW> FindEntry(const Text& path) {
  WIN32_FIND_DATAW data{};
  const HANDLE search = FindFirstFileW(Wide(PathForSearch(path)), &data);
  if (search == INVALID_HANDLE_VALUE) return std::nullopt;
  FindClose(search);
  return data;
}

bool BeginsWithDrive(const Text& path) {
  const auto isLetter = [](char16_t unit) {
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
  };
  return path.size() >= 3 && isLetter(path[0]) && path[1] == u':' && path[2] == u'\\';
}

// Whether a search for the part finds an entry of that name and no other: one that it matches, one
// in another folder, or one that differs by what Windows drops from a name's end.
bool NamesOneEntry(TextView part) {
  return !part.empty() && part.find_first_of(u"/*?<>\"|:") == TextView::npos &&
         part.back() != u'.' && part.back() != u' ';
}

Text Expanded(const Text& text) {
  Text expanded(ExpandEnvironmentStringsW(Wide(text), nullptr, 0), u'\0');
  ExpandEnvironmentStringsW(Wide(text), WideBuffer(expanded), static_cast<DWORD>(expanded.size()));
  return StripAtNull(expanded);
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
  if (!BeginsWithDrive(Path)) return Path;
  Text result;
  std::size_t begin = 3;
  for (auto end = Path.find(u'\\', begin); end != Text::npos; end = Path.find(u'\\', begin)) {
    if (!NamesOneEntry(TextView(Path).substr(begin, end - begin))) return Path;
    const auto entry = FindEntry(Path.substr(0, end));
    if (!entry) return Path;
    result.append(u"\\").append(TextOf(entry->cFileName));
    begin = end + 1;
  }
  return Path.substr(0, 2) + result;
}

bool HasWildcard(TextView path) {
  return path.find_first_of(u"*?") != TextView::npos;
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
  return GetSystemFolder().substr(0, 3);
}

Text GetSystemFolder() {
  return TextOfCall([](WCHAR* buffer, DWORD size) { return GetSystemDirectoryW(buffer, size); });
}

Text GetWindowsFolder() {
  return TextOfCall([](WCHAR* buffer, DWORD size) { return GetWindowsDirectoryW(buffer, size); });
}

// The copies leave the drive out of their paths: only the system's own drive has protected folders.
Text IniFileInUse(const Text& path) {
  const bool bare = path.find(u'\\') == Text::npos;
  const Text whole = bare ? AddBackslash(GetWindowsFolder()) + path : path;
  const Text drive = GetSystemDrive();
  if (LowerCase(whole.substr(0, drive.size())) != LowerCase(drive)) return path;
  const Text copies = AddBackslash(Expanded(u"%LOCALAPPDATA%")) + u"VirtualStore\\";
  const Text copy = copies + whole.substr(drive.size());
  return FileExists(copy) ? copy : path;
}

}  // namespace torvane
