// The user's own files on Windows: in the folder for the program's data, and beside the program for
// those who carry it about. By the system's calls: the library's streams would make half of the
// executable.
#include <memory>
#include <type_traits>

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

std::optional<std::string> ReadBytes(const std::wstring& path) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  HANDLE const handle = CreateFileW(path.c_str(), GENERIC_READ, kShared, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return std::nullopt;
  const OpenFile file(handle);
  std::string bytes;
  std::string room(1 << 16, '\0');
  while (true) {
    DWORD count = 0;
    if (!ReadFile(file.get(), room.data(), static_cast<DWORD>(room.size()), &count, nullptr))
      return std::nullopt;
    if (count == 0) return bytes;
    bytes.append(room, 0, count);
  }
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
    files.push_back({{path.begin(), path.end()}, ReadBytes(path)});
  }
  return files;
}

}  // namespace torvane
