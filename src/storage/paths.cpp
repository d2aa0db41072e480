#include "storage/paths.h"

#include "platform/winapi.h"
#include "storage/file_lookups.h"

namespace torvane {
namespace {

bool BeginsWithDrive(const Text& path) {
  const auto isLetter = [](char16_t unit) {
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
  };
  return path.size() >= 3 && isLetter(path[0]) && path[1] == u':' && path[2] == u'\\';
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
  Path.erase(Path.find_last_not_of(u' ') + 1);
  if (Path.starts_with(u' ')) Path.erase(0, Path.find_first_not_of(u' '));
  if (Path.ends_with(u'\\')) Path.pop_back();
  return Path;
}

Text GetLongPath(Text Path) {
  if (!Path.ends_with(u'\\')) Path += u'\\';
  if (!BeginsWithDrive(Path)) return Path;
  Path.pop_back();
  if (Path.size() == 2) return Path;
  const FileLookups lookups;
  const Sight& sight = LookFor(Path);
  if (!sight.longPath.empty()) return sight.longPath;
  Path += u'\\';
  return Path;
}

bool HasWildcard(TextView path) {
  return path.find_first_of(u"*?") != TextView::npos;
}

Presence PresenceOf(const Text& Path) {
  const FileLookups lookups;
  return LookFor(Path).presence;
}

bool FileExists(const Text& Path) {
  return PresenceOf(Path) == Presence::Found;
}

bool FolderExists(Text& Path) {
  return FolderPresence(Path) == Presence::Found;
}

Presence FolderPresence(Text& Path) {
  Path = RemoveBackslash(Path);
  const FileLookups lookups;
  const Sight& sight = LookFor(Path);
  const bool isFile = sight.presence == Presence::Found && !sight.isFolder;
  return isFile ? Presence::Missing : sight.presence;
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
