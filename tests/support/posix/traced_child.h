// A child process whose system calls a test sees one by one, before they are made: it can let them
// fail, or end the child there.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string_view>

namespace torvane::testing {

class TracedChild {
 public:
  /// Forks; the child stands before the first call of `body`, and ends when that returns.
  explicit TracedChild(const std::function<void()>& body);
  TracedChild(const TracedChild&) = delete;
  TracedChild& operator=(const TracedChild&) = delete;
  /// Ends the child where it stands.
  ~TracedChild();

  /// Lets the child run to its next system call and gives the call's number (SYS_...); nothing if
  /// it has ended instead.
  std::optional<long> next();
  /// Whether one of the first two arguments of the call that the child stands before is a text that
  /// begins so.
  bool names(std::string_view front) const;
  /// The call that the child stands before isn't made; it gives this error.
  void fail(int error);
  /// The call that the child stands before, a write, gets this many bytes at most.
  void cutWrite(unsigned long bytes);
  /// Whether the child has come to its end without a crash.
  bool endedWell() const { return endedWell_; }

 private:
  bool runToStop();

  pid_t pid_;
  bool ended_ = false;
  bool endedWell_ = false;
};

}  // namespace torvane::testing
