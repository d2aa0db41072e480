// A file that other programs read and write too, and the changes of ours that wait to be written to
// it. The order of the steps stands here, once; a hive and a profile file say what their bytes
// mean.
//
// Reading takes no lock: who replaces a file by renaming leaves a whole one at any moment, and a
// reading under which someone writes in place is begun again. Writing takes the folder's lock,
// reads anew if the file isn't the one that was read, does the waiting changes again on what stands
// there, writes and syncs the new file, looks once more whether what was read still stands, and
// begins again if not. While changes wait nothing is read: a command works on one state of the
// file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/disk/reading_stamp.h"
#include "platform/posix/disk/write_back.h"

namespace torvane::posix {

/// Keeps those off, while it lives, who may not write at the same time.
class WriteHold {
 public:
  virtual ~WriteHold() = default;
  /// Called when the new file stands. Throws WriteRefused (MayNotLast) where someone came all the
  /// same who may write over it.
  virtual void confirm() {}
};

class SharedFile : public ChangedFile {
 public:
  /// What becomes of a file that was there when it was read and is gone when it is to be written.
  enum class Vanished {
    Refused,   ///< someone has taken it away: what is left of it in memory doesn't come back
    MadeAnew,  ///< nobody misses it
  };

  /// `path` need not exist, its folder must. More than `limit` bytes aren't read.
  SharedFile(std::filesystem::path path, std::uint64_t limit, Vanished vanished);
  SharedFile(const SharedFile&) = delete;
  SharedFile& operator=(const SharedFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// Reads the file if that hasn't been done, and anew if someone has changed it and no change of
  /// ours waits. Throws what loadFailed() throws.
  void refresh();

  /// Throws std::system_error with the reason where a change may not be made now. Asks once for all
  /// the changes up to the next writing.
  void checkChange();
  /// To be called after a change, so that it is written back.
  void noteChange();
  bool hasChanges() const { return hasChanges_; }

  void writeBack() final;
  std::string hostPath() const override;

 protected:
  // The file's content is a state: what was read, with the waiting changes on top. During a writing
  // there may be a second one, the fresh state, which becomes the state if the writing succeeds.

  /// Makes the state of a reading; no changes wait. `content` without a file is that of a new one.
  virtual void load(FileContent content) = 0;
  /// Makes the fresh state of a reading, with the waiting changes done again. Throws WriteRefused
  /// where that can't be.
  virtual void loadFresh(FileContent content) = 0;
  /// Called in place of load() where the file can't be read; by default throws the error on.
  virtual void loadFailed(const std::system_error& error);
  /// Whether the reading of the fresh state, else of the state, had these bytes.
  virtual bool isReadFrom(std::string_view bytes) const = 0;
  /// Makes what is to be written of the fresh state, else of the state. Gives false where that is
  /// what was read.
  virtual bool render() = 0;
  virtual void write(FileReplacement& out) const = 0;
  /// What was rendered stands in the file: the fresh state, if there is one, becomes the state, and
  /// the waiting changes are done.
  virtual void adopt() = 0;
  /// Drops the fresh state and what was rendered; the waiting changes stay.
  virtual void abandon() = 0;
  /// Throws WriteRefused where a program that runs has the file in memory.
  virtual void checkUse() const {}
  /// By default keeps nobody off.
  virtual std::unique_ptr<WriteHold> holdOff() { return nullptr; }

 private:
  /// A reading that a state was made of. The descriptor keeps the inode's number from going to
  /// another file.
  struct Reading {
    ReadingStamp stamp;
    FileDescriptor descriptor;
  };

  std::optional<FileContent> readIfChanged(Reading& reading, const FileStamp& now) const;
  FileStamp stampNow() const;
  bool replace(const std::filesystem::path& target);
  void lookAgain(const std::filesystem::path& target);
  void checkFolder(const std::filesystem::path& target) const;
  [[noreturn]] void refuseVanished() const;

  std::filesystem::path path_;
  std::uint64_t limit_;
  Vanished vanished_;
  bool isDirect_ = false;  ///< no link stands in the path
  bool hasRead_ = false;
  bool wasThere_ = false;  ///< at any reading
  Reading reading_;
  std::optional<Reading> freshReading_;
  bool hasChanges_ = false;
  FileStamp folder_;        ///< where the file lay when the waiting changes were allowed
  bool isChecked_ = false;  ///< since the last writing, changing was found to be allowed
  bool mustSync_ = false;   ///< the new file stands, its name isn't on the disk for certain
};

}  // namespace torvane::posix
