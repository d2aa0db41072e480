#include "platform/posix/prefix/new_hive.h"

namespace torvane::posix {

std::string NewHive(HiveRoot root, std::string_view architecture) {
  std::string header(kHiveFirstLine);
  header += "\n;; All keys relative to REGISTRY\\\\";
  header += root == HiveRoot::Machine ? "Machine\n" : "User\\\\S-1-5-21-0-0-0-1000\n";
  if (!architecture.empty()) header.append("\n#arch=").append(architecture).append("\n");
  return header;
}

}  // namespace torvane::posix
