#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "platform/posix/disk/forget.h"
#include "platform/posix/disk/write_back.h"
#include "platform/posix/prefix/new_hive.h"
#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

constexpr std::string_view kHiveHeader =
    "WINE REGISTRY Version 2\n;; All keys relative to \\\\User\\\\S-1-5-21-0-0-0-1000\n\n"
    "#arch=win64\n";

std::string& OuterTemporaryFolder() {
  static std::string folder;
  return folder;
}

}  // namespace

const int ScratchWorld::kManyValues = 100'000;
const bool ScratchWorld::kGivesBackBytes = true;
const std::uint32_t ScratchWorld::kManyLists = 2'000;
const char* const ScratchWorld::kUserFolder = "torvane";

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
  // Whose tests these are has lists of their own, perhaps.
  ::setenv("XDG_CONFIG_HOME", (scratch_ / "config").c_str(), 1);
  // What a killed child leaves in its temporary folder goes with the prefix.
  OuterTemporaryFolder() = std::getenv("TMPDIR") != nullptr ? std::getenv("TMPDIR") : "";
  std::filesystem::create_directories(scratch_ / "tmp");
  ::setenv("TMPDIR", (scratch_ / "tmp").c_str(), 1);
  posix::ForgetWorld();
  folder_ = "C:\\scratch";
  std::filesystem::create_directories(Host(folder_));
}

ScratchWorld::~ScratchWorld() {
  if (OuterTemporaryFolder().empty()) {
    ::unsetenv("TMPDIR");
  } else {
    ::setenv("TMPDIR", OuterTemporaryFolder().c_str(), 1);
  }
  posix::ForgetWorld();
  // A leftover in the temporary folder fails no test.
  std::error_code ignored;
  std::filesystem::remove_all(scratch_, ignored);
}

// The prefix goes with the test; within it a key is used again with other values.
void ScratchWorld::RemoveKey(const std::string& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, W(path), 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS) {
    return;
  }
  for (const auto& [name, data] : Values(path)) RegDeleteValueW(key, W(name));
  RegCloseKey(key);
}

void ScratchWorld::WriteBack() {
  EXPECT_TRUE(posix::WriteBackChanges().empty());
}

}  // namespace torvane::testing
