// A child process that does something and then stands as long as it lives.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace torvane::testing {

class OtherProcess {
 public:
  /// Waits until `first` has run in the child, which then becomes the program of `command`, if it
  /// names one.
  explicit OtherProcess(const std::function<bool()>& first,
                        const std::vector<std::string>& command = {});
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  ~OtherProcess();

  /// What `first` gave.
  bool stands = false;

 private:
  pid_t child_;
};

/// Enters a mount namespace of this process's own, in which `kept` is at /mnt and /tmp is empty;
/// gives false where the kernel forbids it.
bool EnterSandbox(const std::filesystem::path& kept);

/// Locks a file as a wineserver does, the file made; kept to the end of this process.
bool LockAsServer(const std::filesystem::path& lock, off_t length = 1);

}  // namespace torvane::testing
