#include "platform/winapi.h"
#include "support/held.h"

namespace torvane::testing {

Held HeldNow() {
  const HANDLE process = GetCurrentProcess();
  DWORD handles = 0;
  GetProcessHandleCount(process, &handles);
  return {static_cast<long>(handles),
          static_cast<long>(GetGuiResources(process, GR_GDIOBJECTS) +
                            GetGuiResources(process, GR_USEROBJECTS)),
          0};
}

}  // namespace torvane::testing
