// What the shell of a fresh Wine leaves out: an .ico file as its own picture.
#include "platform/extras.h"
#include "platform/winapi.h"

namespace torvane {

int ImageOfIconFile(const std::u16string& path, int shown) {
  using CachedImageIndex = int(WINAPI*)(const wchar_t* path, int icon, UINT flags);
  constexpr WORD kCachedImageIndex = 72;  // Wine has it by its number only
  if (!path.ends_with(u".ico")) return shown;
  const HMODULE shell = GetModuleHandleW(L"shell32.dll");
  const auto ask = reinterpret_cast<CachedImageIndex>(
      reinterpret_cast<void (*)()>(GetProcAddress(shell, MAKEINTRESOURCEA(kCachedImageIndex))));
  if (!ask) return shown;
  const std::wstring wide(path.begin(), path.end());
  const int own = ask(wide.c_str(), 0, 0);
  return own >= 0 ? own : shown;
}

}  // namespace torvane
