// Starting a program of the host that lives on without us.
#pragma once

#include <string>
#include <vector>

namespace torvane::posix {

/// An environment variable to set for the program.
struct HostVariable {
  std::string name;
  std::string value;
};

/// Starts a program, found by $PATH, with exactly these arguments (the first is its name), in a
/// session of its own, without our descriptors, and doesn't wait for it. Gives 0, or the errno
/// value of why it couldn't be started.
int StartDetached(const std::vector<std::string>& arguments,
                  const std::vector<HostVariable>& variables = {});

}  // namespace torvane::posix
