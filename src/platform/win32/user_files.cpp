// The user's own files on Windows: in the folder for the program's data, and beside the program for
// those who carry it about.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "platform/extras.h"
#include "platform/winapi.h"

namespace torvane {
namespace {

namespace fs = std::filesystem;

fs::path ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  while (true) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return fs::path(path.substr(0, length)).parent_path();
    path.resize(path.size() * 2);
  }
}

fs::path DataFolder() {
  const wchar_t* const folder = _wgetenv(L"APPDATA");
  return folder == nullptr || *folder == L'\0' ? fs::path() : fs::path(folder) / L"Torvane";
}

}  // namespace

std::vector<UserFile> ReadUserFiles(std::u16string_view name) {
  std::vector<UserFile> files;
  for (const fs::path& folder : {DataFolder(), ProgramFolder()}) {
    const fs::path path = folder / fs::path(name);
    std::error_code error;
    if (folder.empty() || (!fs::exists(path, error) && !error)) continue;
    UserFile& file = files.emplace_back(UserFile{path.u16string(), std::nullopt});
    std::ifstream stream(path, std::ios::binary);
    if (fs::is_regular_file(path, error) && stream) {
      file.bytes.emplace(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
  }
  return files;
}

}  // namespace torvane
