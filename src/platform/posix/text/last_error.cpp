// The error code of the calls that document one; each thread has its own.
#include "platform/posix/text/last_error.h"

#include <cerrno>

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

}  // namespace

DWORD GetLastError() {
  return lastError;
}

void SetLastError(DWORD code) {
  lastError = code;
}

DWORD torvane::posix::WindowsError(int hostError) {
  switch (hostError) {
    case 0:
      return ERROR_SUCCESS;
    case ENOENT:
      return ERROR_FILE_NOT_FOUND;
    case ENOTDIR:
    case ELOOP:
    case ENAMETOOLONG:
      return ERROR_PATH_NOT_FOUND;
    case EEXIST:
      return ERROR_FILE_EXISTS;
    case ENOSPC:
    case EDQUOT:
      return ERROR_DISK_FULL;
    case EBADF:
      return ERROR_INVALID_HANDLE;
    case EBUSY:
    case ETXTBSY:
      return ERROR_SHARING_VIOLATION;
    case EINVAL:
      return ERROR_INVALID_PARAMETER;
    case EILSEQ:
      return ERROR_NO_UNICODE_TRANSLATION;
    default:
      return ERROR_ACCESS_DENIED;
  }
}
