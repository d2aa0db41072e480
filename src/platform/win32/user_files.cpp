// The user's own files on Windows: in the folder for the program's data, and beside the program for
// those who carry it about. By the system's calls: the library's streams would make half of the
// executable.
#include <memory>
#include <type_traits>
#include <utility>

#include "platform/extras.h"
#include "platform/winapi.h"

namespace torvane {
namespace {

struct CloseFile {
  void operator()(HANDLE file) const { CloseHandle(file); }
};
using OpenFile = std::unique_ptr<std::remove_pointer_t<HANDLE>, CloseFile>;

// Without a closing backslash.
std::wstring ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  while (true) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return path.substr(0, path.substr(0, length).rfind(L'\\'));
    path.resize(path.size() * 2);
  }
}

std::wstring DataFolder() {
  const wchar_t* const folder = _wgetenv(L"APPDATA");
  return folder == nullptr || *folder == L'\0' ? std::wstring()
                                               : folder + std::wstring(L"\\Torvane");
}

UserFile ReadUserFile(const std::wstring& path, const std::u16string& shown) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  UserFile read{shown, std::nullopt};
  HANDLE const handle = CreateFileW(path.c_str(), GENERIC_READ, kShared, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return read;
  const OpenFile file(handle);
  std::string bytes;
  std::string room(1 << 16, '\0');
  while (true) {
    DWORD count = 0;
    if (!ReadFile(file.get(), room.data(), static_cast<DWORD>(room.size()), &count, nullptr))
      return read;
    if (count == 0) break;
    bytes.append(room, 0, count);
    read.isTooLarge = bytes.size() > kMostUserBytes;
    if (read.isTooLarge) return read;
  }
  read.bytes = std::move(bytes);
  return read;
}

// One that can't be looked at may be there.
bool IsAbsent(const std::wstring& path) {
  if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) return false;
  const DWORD error = GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

}  // namespace

std::vector<UserFile> ReadUserFiles(std::u16string_view name) {
  std::vector<UserFile> files;
  for (const std::wstring& folder : {DataFolder(), ProgramFolder()}) {
    const std::wstring path = folder + L'\\' + std::wstring(name.begin(), name.end());
    if (folder.empty() || IsAbsent(path)) continue;
    const std::u16string shown(path.begin(), path.end());
    // Who keeps the program in the folder for its settings has one file.
    const bool isRead = !files.empty() && _wcsicmp(Wide(files.front().path), path.c_str()) == 0;
    if (!isRead) files.push_back(ReadUserFile(path, shown));
  }
  return files;
}

}  // namespace torvane
