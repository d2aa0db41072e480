// Changes to hives and profile files wait in memory until the current command ends. Here they are
// collected and written, each file whole or not at all.
#pragma once

#include <string>
#include <system_error>
#include <vector>

namespace torvane::posix {

/// A file that couldn't be written; its changes are kept.
struct WriteFailure {
  std::string path;    ///< host path, UTF-8
  std::string reason;  ///< the system's words
  bool inUseByWine = false;
  bool isReplaced = false;  ///< the new content stands, else the old
};

/// A write that this layer refuses, for a reason in its own words (English, UTF-8).
class WriteRefused : public std::system_error {
 public:
  WriteRefused(std::errc code, const std::string& reason)
      : std::system_error(std::make_error_code(code)), reason_(reason) {}
  const std::string& reason() const { return reason_; }

 private:
  std::string reason_;
};

/// The new file is in its place, but a power cut may bring the old one back: the folder couldn't be
/// synced.
class NotSynced : public std::system_error {
 public:
  explicit NotSynced(int code) : std::system_error(code, std::generic_category()) {}
};

/// Why a write failed, for the user: the refusal's words, else the system's (UTF-8).
std::string ReasonOf(const std::system_error& error);

/// A cached file of the Windows world whose changes wait to be written.
class ChangedFile {
 public:
  virtual ~ChangedFile() = default;
  /// Writes the changes, or throws std::system_error and keeps them.
  virtual void writeBack() = 0;
  virtual std::string hostPath() const = 0;
};

/// Puts a file on the list of those with changes, once however often it is called. The file is the
/// caller's and must outlive its place on the list.
void MarkChanged(ChangedFile& file);
/// Takes a file off the list, its changes lost.
void UnmarkChanged(ChangedFile& file);

/// Whether there are files with changes.
bool ChangesWait();
/// Writes every changed file. The window's loop calls it when it goes idle, and the program when it
/// ends. Gives the files that failed; they stay on the list and the next call tries them again.
std::vector<WriteFailure> WriteBackChanges();

/// What is wrong with the hives that can only be read ("user.reg", line, what), a text a hive, in
/// UTF-8; empty where all are sound. Loads them.
std::vector<std::string> HiveProblems();

/// Why the last refused change to a hive was refused and what the user can do, as a paragraph in
/// UTF-8; empty where none was. Asking clears it.
std::string TakeRefusalNote();

}  // namespace torvane::posix
