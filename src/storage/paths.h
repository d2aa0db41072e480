// Operations on Windows paths, and what the file system says about them.
#pragma once

#include "storage/text.h"

namespace torvane {

/// The path with a backslash at its end; "\" for an empty one.
Text AddBackslash(const Text& Path);

/// The path without blanks at its ends and then without one closing backslash.
Text RemoveBackslash(Text Path);

/// A path that begins with a drive letter, a colon and a backslash, in the form that it has on
/// disk: long names for short ones, the disk's case but for the drive letter, no closing backslash.
/// Any other text, and a path of which a part can't be looked up as the name of one existing entry,
/// comes back unchanged with a backslash at its end.
Text GetLongPath(Text Path);

/// Whether a search for the path would take it for a pattern.
bool HasWildcard(TextView path);

/// What the file system says of a path.
enum class Presence {
  Found,
  Missing,
  RootMissing,  ///< and so is the drive or the server that it is on
  OutOfReach,   ///< it lies where this program may not look: it may well exist
};

/// What is known of the entry of that name, a folder counting too and wildcards acting as such.
Presence PresenceOf(const Text& Path);

/// Whether the file system has an entry of that name, a folder counting too and wildcards acting as
/// such.
bool FileExists(const Text& Path);

/// Whether the path names a folder. The caller's text goes through RemoveBackslash.
bool FolderExists(Text& Path);

/// The same with the reason; a file is a folder that is missing.
Presence FolderPresence(Text& Path);

/// The root of the system's drive ("C:\").
Text GetSystemDrive();

/// The system's folder ("C:\\windows\\system32"), without a closing backslash.
Text GetSystemFolder();

/// The Windows folder, without a closing backslash unless it is a root.
Text GetWindowsFolder();

/// The INI file that a program which names `path` reads and writes: where Windows keeps the user's
/// own copy of a protected file for an old program (below "VirtualStore" of the user's local data),
/// that copy; else `path` as it came. A bare file name means the Windows folder.
Text IniFileInUse(const Text& path);

}  // namespace torvane
