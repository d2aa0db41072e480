// A prefix for targets that need the code page or a place for files. In memory where the host has
// such a folder, since a target writes a file for every input.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace torvane::fuzz {

class ScratchPrefix {
 public:
  ScratchPrefix() {
    std::filesystem::path parent = "/dev/shm";
    if (!std::filesystem::is_directory(parent)) parent = std::filesystem::temp_directory_path();
    std::string pattern = parent / "torvane-fuzz-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    std::filesystem::create_directories(folder_ / "drive_c");
    setenv("WINEPREFIX", folder_.c_str(), 1);
  }
  ScratchPrefix(const ScratchPrefix&) = delete;
  ScratchPrefix& operator=(const ScratchPrefix&) = delete;
  ~ScratchPrefix() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  const std::filesystem::path& folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
};

}  // namespace torvane::fuzz
