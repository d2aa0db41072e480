// What looking for files has shown, kept for as long as one list is read. Entries of a list lie in
// few folders, and each is asked about more than once: for its long name, whether it is there, for
// its picture. A folder on the way is looked at once, below one that isn't there nothing is looked
// for, and a drive or a server that doesn't answer keeps the user waiting once.
#pragma once

#include <memory>

#include "storage/paths.h"

namespace torvane {

/// While one lives, what GetLongPath, FileExists, FolderExists and PresenceOf learn of the disk
/// stands. One that is made while another lives shares that one's knowledge.
class FileLookups {
 public:
  FileLookups();
  FileLookups(const FileLookups&) = delete;
  FileLookups& operator=(const FileLookups&) = delete;
  ~FileLookups();

 private:
  std::unique_ptr<class LookupMemory> own_;
};

/// What a look for a path has shown.
struct Sight {
  Presence presence = Presence::Missing;
  bool isFolder = false;
  bool isPlain = false;  ///< made of a root and plain names, without wildcards and quotes
  /// The path with the names that the disk has, of one found by X:\ and plain names; else empty.
  Text longPath = {};
};

/// Looks for a path as FindFirstFile takes it. Valid until the next look, while a FileLookups
/// lives.
const Sight& LookFor(const Text& path);

/// Whether the drive or share that a path begins with is there to look for files on, and whether it
/// is a disk of this machine; false for a path that begins with none. A FileLookups must live.
bool IsRootThere(const Text& path);
bool IsOnThisMachine(const Text& path);

/// The drive's root or the share ("D:\", "\\server\share\") that a path begins with; empty for
/// none.
Text RootOf(TextView path);

}  // namespace torvane
