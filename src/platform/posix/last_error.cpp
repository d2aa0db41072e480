// The error code of the calls that document one; each thread has its own.
#include "platform/winapi.h"

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

}  // namespace

DWORD GetLastError() {
  return lastError;
}

void SetLastError(DWORD code) {
  lastError = code;
}
