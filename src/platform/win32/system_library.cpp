#include "platform/win32/system_library.h"

#include "platform/winapi.h"

#include <string>

namespace torvane {

// By its whole path no other file is meant, on a Windows without the newer flags too. The DLL stays
// to the program's end.
void (*FindSystemFunction(const wchar_t* library, const char* name))() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetSystemDirectoryW(path.data(), MAX_PATH));
  path.append(L"\\").append(library);
  const HMODULE module = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  return module ? reinterpret_cast<void (*)()>(GetProcAddress(module, name)) : nullptr;
}

}  // namespace torvane
