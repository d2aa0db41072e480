// Changes to hives and profile files wait in memory until the current command ends. Here they are
// collected and written, each file whole or not at all.
#pragma once

#include <string>
#include <vector>

#include "platform/posix/disk/refusal.h"

namespace torvane::posix {

/// A file that couldn't be written; its changes are kept. Or one whose changes, though written, may
/// be lost to a program that has just started.
struct WriteFailure {
  std::string path;    ///< host path, UTF-8
  std::string reason;  ///< the system's words
  WriteFailureKind kind = WriteFailureKind::OldStands;
};

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
/// ends. Gives the files that failed; those that aren't written stay on the list and the next call
/// tries them again.
std::vector<WriteFailure> WriteBackChanges();

}  // namespace torvane::posix
