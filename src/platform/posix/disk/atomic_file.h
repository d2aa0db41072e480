// Replacing a file whole or not at all, and seeing that someone else has replaced it.
//
// These are the steps; SharedFile does them in their order.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/disk/file_descriptor.h"
#include "platform/posix/disk/refusal.h"

namespace torvane::posix {

/// What tells one state of a file from another. Two absent files are equal.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = -1;     ///< in bytes, -1 for a file that isn't there
  std::int64_t modified = 0;  ///< nanoseconds
  std::int64_t changed = 0;   ///< nanoseconds
  std::uint64_t links = 0;    ///< names of the file; one less when it has been replaced

  bool exists() const { return size >= 0; }
  bool operator==(const FileStamp&) const = default;
};

/// The stamp of a file of which the system has told this.
FileStamp StampFrom(const struct stat& status);

/// The stamp of the file that a path leads to, links followed.
FileStamp StampOf(const std::filesystem::path& path);

/// The stamp of an open file. It differs from an earlier one also when the file has been replaced
/// by another or removed. Throws std::system_error.
FileStamp StampOf(const FileDescriptor& file);

/// A file that isn't read because of its size.
class FileTooLarge : public Refusal {
 public:
  FileTooLarge(const std::filesystem::path& path, std::uint64_t size, std::uint64_t limit);
  /// The reason without the path: "has 5.0 TB, and no more than ...".
  const std::string& sizes() const { return sizes_; }

 private:
  std::string sizes_;
};

/// A file's bytes with the stamp that they were read under. The descriptor stays open so that the
/// inode number can't go to another file while the stamp is held against the path.
struct FileContent {
  std::unique_ptr<char[]> bytes;
  std::size_t size = 0;
  FileStamp stamp;
  FileDescriptor descriptor;

  std::string_view view() const { return {bytes.get(), size}; }
};

/// Reads a regular file whole; an absent one gives no bytes and a stamp that says so. One of more
/// than `limit` bytes, or more than the machine's memory can be asked to hold, is refused by its
/// size, a FileTooLarge, before anything is read. Throws std::system_error for that and all else.
inline constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();
FileContent ReadWholeFile(const std::filesystem::path& path, std::uint64_t limit = kNoLimit);

/// The file that a replacement of `path` goes to: links followed, the folder made canonical. The
/// file itself need not exist. Throws std::system_error for a missing folder, a link that leads
/// nowhere, and anything that isn't a regular file.
std::filesystem::path ResolveTarget(const std::filesystem::path& path);

/// Throws std::system_error with the reason where a file, or the folder that it lies in, may not be
/// written: by their mode bits, which are asked for root too, or by the system; where the file is
/// another user's and would become this one's; or where something that no writer left stands at the
/// name of the new file. A file that isn't there asks its folder
/// only.
void CheckReplaceable(const std::filesystem::path& target);

/// Holds a folder against the other programs that replace files in it through this class.
class FolderLock {
 public:
  /// Waits for the lock, ten seconds at most. Throws std::system_error.
  explicit FolderLock(const std::filesystem::path& folder);

 private:
  FileDescriptor folder_;
};

/// Whether bytes are those that were read before.
using BytesTest = std::function<bool(std::string_view)>;

/// The new content of a file: written beside it and put in its place at the end. The caller holds
/// the folder's lock.
class FileReplacement {
 public:
  /// `target` is what ResolveTarget gave. Throws std::system_error, and what CheckReplaceable
  /// throws.
  explicit FileReplacement(const std::filesystem::path& target);
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  /// Removes what was written if it hasn't been committed.
  ~FileReplacement();

  /// Throws std::system_error.
  void append(std::string_view bytes);
  /// Puts the content on the disk, so that nothing slow is left for commit(), which does it where
  /// it hasn't been done. Throws std::system_error.
  void sync();
  /// Puts the new file, with the old one's rights, in its place if what stands there is still what
  /// `expected` says and has bytes that `isRead` is true of, and gives its stamp, and its
  /// descriptor in `descriptor`; else leaves all as it is and gives nothing. Throws
  /// std::system_error.
  std::optional<FileStamp> commit(const FileStamp& expected, const BytesTest& isRead,
                                  FileDescriptor& descriptor);
  /// Puts it in the place of whatever stands there, and on the disk. Throws std::system_error,
  /// which is a NotSynced where the new file is in its place.
  void commit();

 private:
  void flush();
  void writeOut(std::string_view bytes);
  bool takePlaceOf(const FileStamp& expected, const BytesTest& isRead);
  bool move(unsigned how) const;
  void giveBack() const;

  std::filesystem::path target_;
  std::filesystem::path temporary_;
  FileDescriptor file_;
  std::string buffer_;
  bool pending_ = false;
  bool synced_ = false;
};

/// Locks, resolves and replaces in one: for content that doesn't depend on what stands there.
/// Throws std::system_error.
void ReplaceFile(const std::filesystem::path& path, std::string_view content);

/// Puts a folder's names on the disk. Throws NotSynced.
void SyncFolder(const std::filesystem::path& path);

/// Removes what a killed writer of `target` left behind. Where another program writes right now,
/// or the folder can't be changed, nothing is done.
void RemoveStaleReplacement(const std::filesystem::path& target);

}  // namespace torvane::posix
