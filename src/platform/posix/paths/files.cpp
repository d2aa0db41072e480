// Searching, making and deleting files by Windows paths.
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <unordered_map>
#include <utility>

#include "platform/extras.h"
#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/paths/drive_paths.h"
#include "platform/posix/paths/folder_cache.h"
#include "platform/posix/paths/host_lookup.h"
#include "platform/posix/text/code_page.h"
#include "platform/posix/text/last_error.h"
#include "platform/winapi.h"

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kBufferOverflow = 111;
constexpr DWORD kInvalidFolderName = 267;

/// What FindFirstFile fills its record from.
struct FoundFile {
  std::u16string name;
  DWORD attributes = 0;
  struct stat status {};
};

/// A search that found nothing, with the error that says why.
struct SearchResult {
  std::optional<FoundFile> file;
  LONG error = ERROR_SUCCESS;
};

/// Open handles by number. A search has no descriptor: only its first file is ever asked for.
class HandleTable {
 public:
  HANDLE add(FileDescriptor file) {
    last_ += 4;  // as on Windows, the two lowest bits are free
    files_.emplace(last_, std::move(file));
    return reinterpret_cast<HANDLE>(last_);
  }

  /// The file of a handle; null where there is no such handle.
  const FileDescriptor* find(HANDLE handle) const {
    const auto known = files_.find(reinterpret_cast<std::uintptr_t>(handle));
    return known == files_.end() ? nullptr : &known->second;
  }

  void remove(HANDLE handle) { files_.erase(reinterpret_cast<std::uintptr_t>(handle)); }

 private:
  std::unordered_map<std::uintptr_t, FileDescriptor> files_;
  std::uintptr_t last_ = 0;
};

HandleTable& Handles() {
  static HandleTable table;
  return table;
}

BOOL Fail(LONG error) {
  SetLastError(static_cast<DWORD>(error));
  return FALSE;
}

BOOL FailByErrno() {
  return Fail(static_cast<LONG>(WindowsError(errno)));
}

bool IsReadOnly(const struct stat& status) {
  return (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

DWORD AttributesOf(const struct stat& status, std::u16string_view name) {
  DWORD attributes = S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
  if (IsReadOnly(status)) attributes |= FILE_ATTRIBUTE_READONLY;
  if (name.starts_with(u'.') && name != u"." && name != u"..") attributes |= FILE_ATTRIBUTE_HIDDEN;
  return attributes;
}

/// The record of a file under a name; nothing for a link that leads nowhere.
std::optional<FoundFile> Look(const std::string& hostPath, std::u16string_view name) {
  FoundFile file;
  if (stat(hostPath.c_str(), &file.status) != 0) return std::nullopt;
  file.name = name;
  file.attributes = AttributesOf(file.status, name);
  return file;
}

/// The first of the folder's entries that fits, its own two names ahead, which a drive's root
/// hasn't.
std::optional<FoundFile> FindByPattern(const std::string& folder, std::u16string_view pattern,
                                       bool isRoot) {
  for (const std::u16string_view own : {u".", u".."}) {
    if (!isRoot && FitsPattern(own, pattern)) return Look(folder + "/" + ToUtf8(own), own);
  }
  const auto listing = ListFolder(folder);
  if (!listing) return std::nullopt;
  for (const FolderEntry& entry : listing->entries()) {
    if (!FitsPattern(entry.name, pattern)) continue;
    if (auto file = Look(folder + "/" + entry.hostName, entry.name)) return file;
  }
  return std::nullopt;
}

SearchResult FindByName(const PathParts& path) {
  SearchResult result;
  struct stat status {};
  if (const auto host = FindWhole(path, status)) {
    const std::u16string name = FromUtf8(std::string_view(*host).substr(host->rfind('/') + 1));
    result.file = FoundFile{name, AttributesOf(status, name), status};
  } else {
    result.error = errno == EACCES    ? ERROR_ACCESS_DENIED
                   : errno == ENOTDIR ? ERROR_PATH_NOT_FOUND
                                      : ERROR_FILE_NOT_FOUND;
  }
  return result;
}

SearchResult Search(std::u16string_view windowsPath) {
  const auto path = SplitWindowsPath(windowsPath);
  if (!path) return {std::nullopt, ERROR_PATH_NOT_FOUND};
  const bool isPattern =
      !path->parts.empty() && path->parts.back().find_first_of(u"*?") != std::u16string::npos;
  if (!path->closed && !path->parts.empty() && !path->device && !isPattern)
    return FindByName(*path);
  const auto folder = FindFolderOf(*path);
  if (!folder) return {std::nullopt, ERROR_PATH_NOT_FOUND};
  if (path->closed) return {std::nullopt, ERROR_FILE_NOT_FOUND};
  // A drive without a path means its current folder, which here is always its root.
  if (path->parts.empty()) return {Look(*folder + "/", u"."), ERROR_FILE_NOT_FOUND};
  const std::u16string& last = path->parts.back();
  if (path->device) return {FoundFile{last, FILE_ATTRIBUTE_ARCHIVE, {}}, ERROR_SUCCESS};
  return {FindByPattern(*folder, last, path->parts.size() == 1), ERROR_FILE_NOT_FOUND};
}

FILETIME ToFileTime(const timespec& time) {
  constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;
  constexpr std::int64_t kTicksPerSecond = 10'000'000;
  const auto ticks = static_cast<std::uint64_t>(
      (time.tv_sec + kSecondsFrom1601To1970) * kTicksPerSecond + time.tv_nsec / 100);
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32U)};
}

void Fill(WIN32_FIND_DATAW& data, const FoundFile& file) {
  data = WIN32_FIND_DATAW{};
  data.dwFileAttributes = file.attributes;
  data.ftCreationTime = ToFileTime(file.status.st_mtim);
  data.ftLastAccessTime = ToFileTime(file.status.st_atim);
  data.ftLastWriteTime = ToFileTime(file.status.st_mtim);
  if ((file.attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    const auto size = static_cast<std::uint64_t>(file.status.st_size);
    data.nFileSizeHigh = static_cast<DWORD>(size >> 32U);
    data.nFileSizeLow = static_cast<DWORD>(size);
  }
  file.name.copy(data.cFileName, MAX_PATH - 1);
}

/// The name that GetTempFileName gave out last, without its ending.
std::u16string& TemporaryName() {
  static std::u16string name;
  return name;
}

/// Where a new file goes. Nobody can have guessed the digits of a temporary name, so none that
/// begins with them is there in another case, and the folder, which may be long, isn't read for it.
std::optional<fs::path> PlaceOfNew(std::u16string_view windowsPath) {
  const std::u16string& drawn = TemporaryName();
  if (drawn.empty() || !windowsPath.starts_with(drawn)) return HostPathForNew(windowsPath);
  const auto path = SplitWindowsPath(windowsPath);
  if (!path || path->device || path->closed || !IsFileName(path->parts.back())) return std::nullopt;
  const auto folder = FindFolderOf(*path);
  if (!folder) return std::nullopt;
  return *folder + "/" + ToUtf8(path->parts.back());
}

/// Opens a file that isn't there yet, for this user alone; follows no link.
FileDescriptor MakeFile(std::u16string_view windowsPath) {
  const auto host = PlaceOfNew(windowsPath);
  if (!host) {
    errno = ENOTDIR;
    return {};
  }
  return FileDescriptor(
      open(host->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
}

/// The temporary folder in the form that needs no drive; nothing where a part can't be written so.
std::optional<std::u16string> UnixForm(const fs::path& folder) {
  if (!folder.is_absolute()) return std::nullopt;
  std::u16string result = u"\\\\?\\unix";
  for (const fs::path& part : folder.lexically_normal().relative_path()) {
    if (part.empty()) continue;
    const std::u16string name = FromUtf8(part.native());
    if (!IsFileName(name) || ToUtf8(name) != part.native()) return std::nullopt;
    result += u"\\" + name;
  }
  return result + u"\\";
}

std::u16string TemporaryFolder() {
  const char* named = std::getenv("TMPDIR");
  std::error_code ignored;
  if (named != nullptr && fs::is_directory(named, ignored)) {
    if (auto folder = UnixForm(named)) return *folder;
  }
  return u"\\\\?\\unix\\tmp\\";
}

/// Copies a folder's path; gives its length, or the size needed where the buffer is too small.
UINT HandOut(std::u16string_view folder, LPWSTR buffer, UINT size) {
  const auto length = static_cast<UINT>(folder.size());
  if (size <= length) return length + 1;
  std::copy(folder.begin(), folder.end(), buffer);
  buffer[length] = u'\0';
  return length;
}

}  // namespace
}  // namespace torvane::posix

using namespace torvane::posix;

HANDLE FindFirstFileW(LPCWSTR path, WIN32_FIND_DATAW* data) {
  const SearchResult result = Search(path);
  if (!result.file) {
    Fail(result.error);
    return INVALID_HANDLE_VALUE;
  }
  Fill(*data, *result.file);
  return Handles().add({});
}

BOOL FindClose(HANDLE search) {
  const FileDescriptor* file = Handles().find(search);
  if (file == nullptr || *file) return Fail(ERROR_INVALID_HANDLE);
  Handles().remove(search);
  return TRUE;
}

BOOL DeleteFileW(LPCWSTR path) {
  const auto parts = SplitWindowsPath(path);
  const auto folder = parts ? FindFolderOf(*parts) : std::nullopt;
  if (!folder) return Fail(ERROR_PATH_NOT_FOUND);
  if (parts->closed || parts->parts.empty()) return Fail(ERROR_PATH_NOT_FOUND);
  if (parts->device) return Fail(ERROR_ACCESS_DENIED);
  const auto host = FindPart(*folder, parts->parts.back());
  if (!host) return Fail(ERROR_FILE_NOT_FOUND);
  struct stat status {};
  if (lstat(host->c_str(), &status) != 0) return FailByErrno();
  if (S_ISDIR(status.st_mode) || (!S_ISLNK(status.st_mode) && IsReadOnly(status))) {
    return Fail(ERROR_ACCESS_DENIED);
  }
  return unlink(host->c_str()) == 0 ? TRUE : FailByErrno();
}

HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD /*share*/, SECURITY_ATTRIBUTES* /*security*/,
                   DWORD disposition, DWORD /*attributes*/, HANDLE /*pattern*/) {
  if (access != GENERIC_WRITE || disposition != CREATE_NEW) {
    Fail(ERROR_INVALID_PARAMETER);
    return INVALID_HANDLE_VALUE;
  }
  FileDescriptor file = MakeFile(path);
  if (!file) {
    FailByErrno();
    return INVALID_HANDLE_VALUE;
  }
  return Handles().add(std::move(file));
}

BOOL WriteFile(HANDLE file, const void* bytes, DWORD count, DWORD* written, void* /*overlapped*/) {
  DWORD done = 0;
  if (written != nullptr) *written = 0;
  const FileDescriptor* open = Handles().find(file);
  if (open == nullptr || !*open) return Fail(ERROR_INVALID_HANDLE);
  while (done < count) {
    const ssize_t part = write(open->get(), static_cast<const char*>(bytes) + done, count - done);
    if (part < 0 && errno == EINTR) continue;
    if (part < 0) return FailByErrno();
    done += static_cast<DWORD>(part);
    if (written != nullptr) *written = done;
  }
  return TRUE;
}

BOOL CloseHandle(HANDLE handle) {
  const FileDescriptor* file = Handles().find(handle);
  if (file == nullptr || !*file) return Fail(ERROR_INVALID_HANDLE);
  Handles().remove(handle);
  return TRUE;
}

DWORD GetTempPathW(DWORD size, LPWSTR buffer) {
  return HandOut(TemporaryFolder(), buffer, size);
}

UINT GetTempFileNameW(LPCWSTR folder, LPCWSTR prefix, UINT /*number*/, LPWSTR name) {
  constexpr std::size_t kPrefixLength = 3;
  constexpr int kAttempts = 64;
  std::u16string front = folder;
  if (!front.ends_with(u'\\') && !front.ends_with(u'/')) front += u'\\';
  front += std::u16string_view(prefix).substr(0, kPrefixLength);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    // Eight digits that nobody can guess, so that nobody can wait at the names made from this one.
    UINT number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number) return FALSE;
    if (number == 0) continue;
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%08X", number);
    TemporaryName() = front + FromUtf8(digits.data());
    const std::u16string path = TemporaryName() + u".tmp";
    if (path.size() >= static_cast<std::size_t>(MAX_PATH)) {
      SetLastError(kBufferOverflow);
      return 0;
    }
    if (MakeFile(path)) {
      path.copy(name, path.size());
      name[path.size()] = u'\0';
      return number;
    }
    if (errno != EEXIST) {
      SetLastError(errno == ENOTDIR ? kInvalidFolderName : WindowsError(errno));
      return 0;
    }
  }
  SetLastError(ERROR_FILE_EXISTS);
  return 0;
}

UINT GetSystemDirectoryW(LPWSTR buffer, UINT size) {
  return HandOut(u"C:\\windows\\system32", buffer, size);
}

UINT GetWindowsDirectoryW(LPWSTR buffer, UINT size) {
  return HandOut(u"C:\\windows", buffer, size);
}

// No path is too long for this side.
std::u16string torvane::PathForSearch(const std::u16string& path) {
  return path;
}
