// The new content goes to a file of a fixed name in the same folder, which is synced and renamed.
// The name is fixed so that what a killed writer left is found and removed by the next one; the
// folder's lock sees to it that no two writers use it at once. Others who may write to the folder
// can put something at that name too: what a writer can't have left there is not touched, and
// nothing is written while it stands.
#include "platform/posix/atomic_file.h"

#include "platform/posix/write_back.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace torvane::posix {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;
constexpr const char* kAccessList = "system.posix_acl_access";

[[noreturn]] void Fail(int code, const std::filesystem::path& path) {
  throw std::system_error(code, std::generic_category(), path.string());
}

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

void CheckWritable(const std::filesystem::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) Fail(errno, path);
  if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) Fail(EACCES, path);
  if (access(path.c_str(), W_OK) != 0) Fail(errno, path);
}

}  // namespace

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  if (this != &other) {
    reset();
    descriptor_ = std::exchange(other.descriptor_, -1);
  }
  return *this;
}

void FileDescriptor::reset() {
  // What close reports no longer matters: what must be on the disk was synced before.
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = -1;
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

FileContent ReadWholeFile(const std::filesystem::path& path) {
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
    content.bytes = std::make_unique_for_overwrite<char[]>(size);
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

void FileReplacement::takeOverRights() {
  struct stat old {};
  if (stat(target_.c_str(), &old) != 0) {
    if (errno == ENOENT) return;
    Fail(errno, target_);
  }
  struct stat now {};
  if (fstat(file_.get(), &now) != 0) Fail(errno, temporary_);
  if ((old.st_uid != now.st_uid || old.st_gid != now.st_gid) &&
      fchown(file_.get(), old.st_uid, old.st_gid) != 0)
    Fail(errno, target_);
  if (fchmod(file_.get(), old.st_mode & 07777U) != 0) Fail(errno, target_);
  // Under an access list the mode's group bits are its mask: without the list they would let the
  // whole group in.
  std::array<char, 4096> list{};
  const ssize_t size = getxattr(target_.c_str(), kAccessList, list.data(), list.size());
  if (size > 0 &&
      fsetxattr(file_.get(), kAccessList, list.data(), static_cast<std::size_t>(size), 0) != 0)
    Fail(errno, target_);
}

void FileReplacement::sync() {
  flush();
  takeOverRights();
  if (fsync(file_.get()) != 0) Fail(errno, target_);
  synced_ = true;
}

FileStamp FileReplacement::commit(FileDescriptor* descriptor) {
  if (!synced_) sync();
  if (rename(temporary_.c_str(), target_.c_str()) != 0) Fail(errno, target_);
  pending_ = false;
  const FileStamp stamp = StampOf(file_);
  const FileDescriptor folder(
      open(target_.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // EINVAL: a file system that can't sync folders.
  if (!folder || (fsync(folder.get()) != 0 && errno != EINVAL)) throw NotSynced(errno);
  if (descriptor != nullptr) *descriptor = std::move(file_);
  return stamp;
}

FileStamp ReplaceFile(const std::filesystem::path& path, std::string_view content) {
  const std::filesystem::path target = ResolveTarget(path);
  const FolderLock lock(target.parent_path());
  FileReplacement replacement(target);
  replacement.append(content);
  return replacement.commit();
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
