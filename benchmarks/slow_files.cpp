// A file system that is far away: each call that names a file below one of the folders of
// SLOW_FOLDERS (separated by bars, since drives have colons) waits a millisecond. How many there
// were goes to the file SLOW_CALLS at the end.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

namespace {

std::atomic<int> calls{0};

/// Waits where the path lies below a slow folder. A path below a descriptor names none: who has the
/// folder open is past the way there, and waits at the folder alone.
void Wait(const char* path) {
  const char* folders = std::getenv("SLOW_FOLDERS");
  if (folders == nullptr || path == nullptr) return;
  std::string_view rest = folders;
  const std::string_view wanted = path;
  while (!rest.empty()) {
    const std::string_view folder = rest.substr(0, rest.find('|'));
    rest.remove_prefix(std::min(rest.size(), folder.size() + 1));
    if (!wanted.starts_with(folder)) continue;
    calls.fetch_add(1);
    const timespec millisecond{0, 1'000'000};
    nanosleep(&millisecond, nullptr);
    return;
  }
}

/// The C library's own function of a name.
template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

__attribute__((destructor)) void Tell() {
  const char* place = std::getenv("SLOW_CALLS");
  if (place == nullptr) return;
  if (FILE* file = std::fopen(place, "w")) {
    std::fprintf(file, "%d\n", calls.load());
    std::fclose(file);
  }
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = va_arg(more, mode_t);
  va_end(more);
  Wait(path);
  return Next<int(const char*, int, mode_t)>("open")(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = va_arg(more, mode_t);
  va_end(more);
  Wait(path);
  return Next<int(const char*, int, mode_t)>("open64")(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = va_arg(more, mode_t);
  va_end(more);
  Wait(path);
  return Next<int(int, const char*, int, mode_t)>("openat")(folder, path, flags, mode);
}

int stat(const char* path, struct stat* status) noexcept {
  Wait(path);
  return Next<int(const char*, struct stat*)>("stat")(path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
  Wait(path);
  return Next<int(const char*, struct stat*)>("lstat")(path, status);
}

int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
  Wait(path);
  return Next<int(int, const char*, struct stat*, int)>("fstatat")(folder, path, status, flags);
}

int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
  Wait(path);
  return Next<int(int, const char*, int, unsigned, struct statx*)>("statx")(folder, path, flags,
                                                                            mask, status);
}

int access(const char* path, int mode) noexcept {
  Wait(path);
  return Next<int(const char*, int)>("access")(path, mode);
}

int faccessat(int folder, const char* path, int mode, int flags) noexcept {
  Wait(path);
  return Next<int(int, const char*, int, int)>("faccessat")(folder, path, mode, flags);
}

DIR* opendir(const char* path) {
  Wait(path);
  return Next<DIR*(const char*)>("opendir")(path);
}

ssize_t readlink(const char* path, char* target, size_t size) noexcept {
  Wait(path);
  return Next<ssize_t(const char*, char*, size_t)>("readlink")(path, target, size);
}

char* realpath(const char* path, char* resolved) noexcept {
  Wait(path);
  return Next<char*(const char*, char*)>("realpath")(path, resolved);
}

}  // extern "C"
