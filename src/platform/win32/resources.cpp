// Resources on Windows: all of them lie in the executable, put there by resources/torvane.rc.
#include "platform/extras.h"
#include "platform/win32/system_library.h"
#include "platform/winapi.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

namespace torvane {
namespace {

std::wstring ExecutablePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::u16string ToText(const wchar_t* text, std::size_t length) {
  return {text, text + length};
}

template <class Function>
Function& VersionFunction(const char* name) {
  Function* const found = SystemFunction<Function>(L"version.dll", name);
  if (!found) throw std::runtime_error("the system reads no version records");
  return *found;
}

std::vector<std::byte> ReadVersionBlock() {
  auto& sizeOf = VersionFunction<decltype(GetFileVersionInfoSizeW)>("GetFileVersionInfoSizeW");
  auto& read = VersionFunction<decltype(GetFileVersionInfoW)>("GetFileVersionInfoW");
  const std::wstring path = ExecutablePath();
  DWORD ignored = 0;
  std::vector<std::byte> block(sizeOf(path.c_str(), &ignored));
  if (block.empty() || !read(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data())) {
    throw std::runtime_error("the executable has no version record");
  }
  return block;
}

struct BlockPart {
  void* address = nullptr;
  UINT size = 0;
};

BlockPart PartOf(const std::vector<std::byte>& block, const wchar_t* path) {
  BlockPart part;
  const bool found = VersionFunction<decltype(VerQueryValueW)>("VerQueryValueW")(
                         block.data(), path, &part.address, &part.size) != FALSE;
  return found ? part : BlockPart{};
}

// Text `name` of the version record's only language, US English in 16-bit text.
std::u16string VersionText(const std::vector<std::byte>& block, const wchar_t* name) {
  const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
  const BlockPart part = PartOf(block, path.c_str());
  const auto* const units = static_cast<const wchar_t*>(part.address);
  return units ? ToText(units, wcsnlen(units, part.size)) : std::u16string();
}

}  // namespace

std::span<const std::byte> DataResource(int id) {
  HRSRC const found = FindResourceW(nullptr, MAKEINTRESOURCEW(id), L"DATA");
  HGLOBAL const loaded = found ? LoadResource(nullptr, found) : nullptr;
  if (!loaded) {
    throw std::runtime_error("there is no resource " + std::to_string(id) + " of this kind");
  }
  return {static_cast<const std::byte*>(LockResource(loaded)), SizeofResource(nullptr, found)};
}

std::u16string StringResource(int id) {
  if (id < 1) return {};
  // With a size of 0 the call gives the address of the text in the executable itself.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(GetModuleHandleW(nullptr), static_cast<UINT>(id),
                                 reinterpret_cast<LPWSTR>(&text), 0);
  return length > 0 ? ToText(text, static_cast<std::size_t>(length)) : std::u16string();
}

VersionRecord ReadVersionRecord() {
  const std::vector<std::byte> block = ReadVersionBlock();
  const BlockPart fixed = PartOf(block, L"\\");
  if (fixed.size < sizeof(VS_FIXEDFILEINFO)) {
    throw std::runtime_error("the executable's version record is incomplete");
  }
  const auto& numbers = *static_cast<const VS_FIXEDFILEINFO*>(fixed.address);
  return {VersionText(block, L"ProductName"),    VersionText(block, L"FileDescription"),
          VersionText(block, L"LegalCopyright"), HIWORD(numbers.dwFileVersionMS),
          LOWORD(numbers.dwFileVersionMS),       HIWORD(numbers.dwFileVersionLS)};
}

std::u16string ExecutableBaseName() {
  const std::wstring path = ExecutablePath();
  const std::wstring name = path.substr(path.rfind(L'\\') + 1);
  return ToText(name.c_str(), std::min(name.rfind(L'.'), name.size()));
}

// A window's program has no console to answer on: arguments mean nothing here.
std::optional<int> AnswerArguments(std::span<const char* const> /*arguments*/) {
  return std::nullopt;
}

// A Windows user has one registry.
std::u16string WorldTitle() {
  return {};
}

void CompleteShellImageList() {
  using FileIconInit = BOOL(WINAPI*)(BOOL restoreCache);
  constexpr WORD kFileIconInit = 660;
  HMODULE const shell = GetModuleHandleW(L"shell32.dll");
  if (!shell) return;
  const auto call = reinterpret_cast<FileIconInit>(
      reinterpret_cast<void (*)()>(GetProcAddress(shell, MAKEINTRESOURCEA(kFileIconInit))));
  if (call) call(TRUE);
}

}  // namespace torvane
