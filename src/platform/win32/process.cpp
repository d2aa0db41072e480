#include "platform/extras.h"
#include "platform/win32/system_library.h"
#include "platform/winapi.h"

namespace torvane {

void GuardProcess() {
  // A list may name a drive without a disk; that file is missing, and nobody need insert one.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  // What the system's own DLLs load by a bare name comes from the system's folder too.
  SetDllDirectoryW(L"");
  constexpr DWORD kSystemFolderOnly = 0x00000800;
  const auto restrict =
      SystemFunction<BOOL WINAPI(DWORD)>(L"kernel32.dll", "SetDefaultDllDirectories");
  if (restrict) restrict(kSystemFolderOnly);
}

}  // namespace torvane
