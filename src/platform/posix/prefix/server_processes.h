// The processes that may be the wineserver of a prefix, in whatever sandbox they run.
#pragma once

#include <string>
#include <vector>

#include "platform/posix/prefix/server_places.h"

namespace torvane::posix {

/// What the processes of this system tell of a prefix's server.
struct ServerProcesses {
  /// A way to each lock file that a process of the prefix holds open or would hold; the first that
  /// can be opened counts for a process.
  struct Process {
    std::vector<std::string> locks;
    bool isServer = false;  ///< it stands in the server's folder, so it has to be askable
  };
  std::vector<Process> processes;
  /// The roots, other than this program's, that processes have ("/proc/123/root").
  std::vector<std::string> roots;
};

/// Looks at every process that this user may look at. No name of a program counts: a server is a
/// process whose current folder is called as the prefix's server folder, or one that stands in the
/// prefix and has the lock of such a folder open. Throws
/// std::system_error where this process's own limits keep it from looking.
ServerProcesses FindServerProcesses(const ServedPrefix& prefix);

}  // namespace torvane::posix
