#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "platform/posix/prefix.h"
#include "platform/posix/write_back.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

constexpr std::string_view kHiveHeader =
    "WINE REGISTRY Version 2\n;; All keys relative to \\\\User\\\\S-1-5-21-0-0-0-1000\n\n"
    "#arch=win64\n";

}  // namespace

ScratchWorld::ScratchWorld() {
  std::string pattern = std::filesystem::temp_directory_path() / "torvane-test-XXXXXX";
  scratch_ = ::mkdtemp(pattern.data());
  hostRoot_ = scratch_ / "drive_c";
  std::filesystem::create_directories(hostRoot_ / "windows" / "system32");
  std::filesystem::create_directories(scratch_ / "dosdevices");
  std::filesystem::create_symlink("../drive_c", scratch_ / "dosdevices" / "c:");
  for (const char* hive : {"user.reg", "system.reg"}) {
    std::ofstream(scratch_ / hive) << kHiveHeader;
  }
  ::setenv("WINEPREFIX", scratch_.c_str(), 1);
  posix::ForgetWorld();
  folder_ = "C:\\scratch";
  std::filesystem::create_directories(Host(folder_));
}

ScratchWorld::~ScratchWorld() {
  posix::ForgetWorld();
  // A leftover in the temporary folder fails no test.
  std::error_code ignored;
  std::filesystem::remove_all(scratch_, ignored);
}

// The whole prefix is new, and goes with the test.
void ScratchWorld::RemoveKey(const std::string& /*path*/) {}

void ScratchWorld::WriteBack() {
  EXPECT_TRUE(posix::WriteBackChanges().empty());
}

}  // namespace torvane::testing
