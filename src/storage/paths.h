// Operations on Windows paths, and what the file system says about them.
#pragma once

#include "storage/text.h"

namespace torvane {

/// The path with a backslash at its end; "\" for an empty one.
Text AddBackslash(const Text& Path);

/// The path without blanks at its ends and then without one closing backslash.
Text RemoveBackslash(Text Path);

/// The path in the form that it has on disk: long names for short ones, the disk's case but for the
/// drive letter, no closing backslash. A path of which a part doesn't exist, and a UNC path, comes
/// back unchanged with a backslash at its end.
Text GetLongPath(Text Path);

/// Whether the file system has an entry of that name, a folder counting too and wildcards acting as
/// such.
bool FileExists(const Text& Path);

/// Whether the path names a folder. The caller's text goes through RemoveBackslash.
bool FolderExists(Text& Path);

/// The root of the system's drive ("C:\").
Text GetSystemDrive();

/// The Windows folder, without a closing backslash unless it is a root.
Text GetWindowsFolder();

}  // namespace torvane
