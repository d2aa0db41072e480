// The new content goes to a file of a fixed name in the same folder, which is synced and renamed.
// The name is fixed so that what a killed writer left is found and removed by the next one; the
// folder's lock sees to it that no two writers use it at once. Others who may write to the folder
// can put something at that name too: what a writer can't have left there is not touched, and
// nothing is written while it stands.
#include "platform/posix/disk/atomic_file.h"

#include "platform/posix/disk/rights.h"
#include "platform/sizes.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace torvane::posix {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;

[[noreturn]] void Fail(int code, const std::filesystem::path& path) {
  throw std::system_error(code, std::generic_category(), path.string());
}

std::filesystem::path TemporaryFor(const std::filesystem::path& target) {
  constexpr std::size_t kLongestStem = 240;
  return target.parent_path() /
         ("." + target.filename().string().substr(0, kLongestStem) + ".torvane");
}

/// Whether a writer of `target` can have left this: a plain file under one name, of this user or of
/// the owner that the finished file was to have.
bool IsLeftover(const struct stat& found, const std::filesystem::path& target) {
  if (!S_ISREG(found.st_mode) || found.st_nlink != 1) return false;
  struct stat old {};
  return found.st_uid == geteuid() ||
         (stat(target.c_str(), &old) == 0 && found.st_uid == old.st_uid);
}

/// Whether there is a leftover at the temporary name. Throws where something else is.
bool FindLeftover(const std::filesystem::path& temporary, const std::filesystem::path& target) {
  struct stat found {};
  if (lstat(temporary.c_str(), &found) != 0) return false;
  if (IsLeftover(found, target)) return true;
  throw WriteRefused(
      std::errc::file_exists,
      temporary.string() + " is in the way, a link or another user's file, which stays as it is");
}

/// Reads up to `size` bytes; gives how many there were.
std::size_t ReadAll(int descriptor, char* bytes, std::size_t size,
                    const std::filesystem::path& path) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = read(descriptor, bytes + done, size - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) Fail(errno, path);
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

/// Whether a file that has been renamed is otherwise as it was when it was read.
bool HasContentOf(const std::filesystem::path& file, const FileStamp& stamp,
                  const BytesTest& isRead) {
  FileStamp now = StampOf(file);
  now.changed = stamp.changed;
  if (now != stamp) return false;
  try {
    return isRead(ReadWholeFile(file).view());
  } catch (const std::system_error&) {
    return false;
  }
}

/// As many bytes as may be asked of the machine's memory, a half of it.
std::uint64_t MostBytes() {
  return static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) *
         static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) / 2;
}

/// Room for a file of this size. Throws FileTooLarge.
std::unique_ptr<char[]> RoomFor(const std::filesystem::path& path, std::uint64_t size,
                                std::uint64_t limit) {
  limit = std::min(limit, MostBytes());
  if (size > limit) throw FileTooLarge(path, size, limit);
  try {
    return std::make_unique_for_overwrite<char[]>(size);
  } catch (const std::bad_alloc&) {
    throw FileTooLarge(path, size, limit);
  }
}

void CheckWritable(const std::filesystem::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) Fail(errno, path);
  if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) Fail(EACCES, path);
  if (access(path.c_str(), W_OK) != 0) Fail(errno, path);
}

}  // namespace

FileStamp StampFrom(const struct stat& status) {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  FileStamp stamp;
  stamp.device = status.st_dev;
  stamp.inode = status.st_ino;
  stamp.size = status.st_size;
  stamp.modified = status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec;
  stamp.changed = status.st_ctim.tv_sec * kNanoseconds + status.st_ctim.tv_nsec;
  stamp.links = status.st_nlink;
  return stamp;
}

FileStamp StampOf(const std::filesystem::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? StampFrom(status) : FileStamp{};
}

FileStamp StampOf(const FileDescriptor& file) {
  struct stat status {};
  if (fstat(file.get(), &status) != 0) Fail(errno, {});
  return StampFrom(status);
}

FileTooLarge::FileTooLarge(const std::filesystem::path& path, std::uint64_t size,
                           std::uint64_t limit)
    : Refusal(std::errc::file_too_large, path.string() + " " + SizesInWords(size, limit)),
      sizes_(SizesInWords(size, limit)) {}

FileContent ReadWholeFile(const std::filesystem::path& path, std::uint64_t limit) {
  constexpr int kAttempts = 8;
  FileContent content;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    // Without O_NONBLOCK a named pipe in the file's place would hold us up for ever.
    content.descriptor = FileDescriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!content.descriptor) {
      if (errno == ENOENT) return {};
      Fail(errno, path);
    }
    struct stat status {};
    if (fstat(content.descriptor.get(), &status) != 0) Fail(errno, path);
    if (S_ISDIR(status.st_mode)) Fail(EISDIR, path);
    if (!S_ISREG(status.st_mode)) Fail(EINVAL, path);
    content.stamp = StampFrom(status);
    const auto size = static_cast<std::size_t>(status.st_size);
    content.bytes = RoomFor(path, size, limit);
    content.size = ReadAll(content.descriptor.get(), content.bytes.get(), size, path);
    // Someone may be writing in place: what was read counts if the stamp still stands.
    if (content.size == size && StampOf(content.descriptor) == content.stamp) return content;
  }
  Fail(EBUSY, path);
}

std::filesystem::path ResolveTarget(const std::filesystem::path& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) Fail(errno, path);
    return std::filesystem::canonical(path.parent_path()) / path.filename();
  }
  std::filesystem::path target = std::filesystem::canonical(path);
  if (stat(target.c_str(), &status) != 0) Fail(errno, target);
  if (S_ISDIR(status.st_mode)) Fail(EISDIR, target);
  if (!S_ISREG(status.st_mode)) Fail(EINVAL, target);
  return target;
}

void CheckReplaceable(const std::filesystem::path& target) {
  CheckWritable(target.parent_path());
  if (StampOf(target).exists()) CheckWritable(target);
  CheckOwner(target);
  FindLeftover(TemporaryFor(target), target);
}

FolderLock::FolderLock(const std::filesystem::path& folder)
    : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  using namespace std::chrono_literals;
  if (!folder_) Fail(errno, folder);
  // A stopped program that holds the lock must not freeze this one.
  const auto deadline = std::chrono::steady_clock::now() + 10s;
  while (flock(folder_.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) Fail(errno, folder);
    if (std::chrono::steady_clock::now() > deadline) Fail(ETIMEDOUT, folder);
    std::this_thread::sleep_for(1ms);
  }
}

FileReplacement::FileReplacement(const std::filesystem::path& target)
    : target_(target), temporary_(TemporaryFor(target)) {
  CheckReplaceable(target_);
  // Under the lock, the writer that it was left by is dead.
  if (FindLeftover(temporary_, target_) && unlink(temporary_.c_str()) != 0) Fail(errno, temporary_);
  file_ = FileDescriptor(
      open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file_) Fail(errno, temporary_);
  pending_ = true;
}

FileReplacement::~FileReplacement() {
  // If this fails too, the next writer removes it.
  if (pending_) unlink(temporary_.c_str());
}

void FileReplacement::append(std::string_view bytes) {
  if (buffer_.size() + bytes.size() > kBufferSize) flush();
  if (bytes.size() >= kBufferSize) {
    writeOut(bytes);
  } else {
    buffer_.append(bytes);
  }
}

void FileReplacement::flush() {
  writeOut(buffer_);
  buffer_.clear();
}

void FileReplacement::writeOut(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file_.get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) Fail(errno, target_);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void FileReplacement::sync() {
  flush();
  TakeOverRights(target_, file_);
  if (fsync(file_.get()) != 0) Fail(errno, target_);
  synced_ = true;
}

std::optional<FileStamp> FileReplacement::commit(const FileStamp& expected, const BytesTest& isRead,
                                                 FileDescriptor& descriptor) {
  if (!synced_) sync();
  if (!takePlaceOf(expected, isRead)) return std::nullopt;
  const FileStamp stamp = StampOf(file_);
  descriptor = std::move(file_);
  return stamp;
}

/// Between a look at what stands there and the renaming another program may put its own file there.
/// So the two names are exchanged, and what came out is looked at: by its bytes, since a write in
/// place need not show in the stamp, whose time of change the renaming has set.
bool FileReplacement::takePlaceOf(const FileStamp& expected, const BytesTest& isRead) {
  if (StampOf(target_) != expected) return false;
  const bool isNew = !expected.exists();
  if (move(isNew ? RENAME_NOREPLACE : RENAME_EXCHANGE)) {
    if (!isNew && !HasContentOf(temporary_, expected, isRead)) {
      giveBack();
      return false;
    }
    // If the old file stays, the next writer removes it.
    if (!isNew) unlink(temporary_.c_str());
    pending_ = false;
    return true;
  }
  if (errno == (isNew ? EEXIST : ENOENT)) return false;
  const bool isUnknown = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
  if (!isUnknown || !move(0)) Fail(errno, target_);
  pending_ = false;
  return true;
}

bool FileReplacement::move(unsigned how) const {
  return renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target_.c_str(), how) == 0;
}

/// Puts another program's file back in its place. Where a third file has come there meanwhile, that
/// one is the newest and stays.
void FileReplacement::giveBack() const {
  const FileStamp own = StampOf(file_);
  for (int i = 0; i < 2; ++i) {
    if (!move(RENAME_EXCHANGE)) Fail(errno, target_);
    if (StampOf(temporary_).inode == own.inode) return;
  }
}

void FileReplacement::commit() {
  if (!synced_) sync();
  if (!move(0)) Fail(errno, target_);
  pending_ = false;
  SyncFolder(target_.parent_path());
}

void SyncFolder(const std::filesystem::path& path) {
  const FileDescriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // EINVAL: a file system that can't sync folders.
  if (!folder || (fsync(folder.get()) != 0 && errno != EINVAL)) throw NotSynced(errno);
}

void ReplaceFile(const std::filesystem::path& path, std::string_view content) {
  const std::filesystem::path target = ResolveTarget(path);
  const FolderLock lock(target.parent_path());
  FileReplacement replacement(target);
  replacement.append(content);
  replacement.commit();
}

void RemoveStaleReplacement(const std::filesystem::path& target) {
  const std::filesystem::path temporary = TemporaryFor(target);
  struct stat status {};
  if (lstat(temporary.c_str(), &status) != 0 || !IsLeftover(status, target)) return;
  const FileDescriptor folder(
      open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder && flock(folder.get(), LOCK_EX | LOCK_NB) == 0) unlink(temporary.c_str());
}

}  // namespace torvane::posix
