// Two forks: the middle process ends at once, so that nobody has to wait for the program and it
// belongs to no terminal of ours. A pipe that closes on exec brings back why an exec failed.
#include "platform/posix/shell/spawn.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "platform/posix/disk/atomic_file.h"

namespace torvane::posix {
namespace {

std::optional<std::string> FindProgram(const std::string& name) {
  const char* named = std::getenv("PATH");
  std::string_view rest = named != nullptr ? named : "/usr/local/bin:/usr/bin:/bin";
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    const std::string path = std::string(rest.substr(0, end)) + "/" + name;
    rest.remove_prefix(std::min(end + 1, rest.size()));
    struct stat status {};
    const bool file =
        path.front() == '/' && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    if (file && access(path.c_str(), X_OK) == 0) return path;
  }
  return std::nullopt;
}

/// Our environment with some variables replaced.
std::vector<std::string> EnvironmentWith(const std::vector<HostVariable>& variables) {
  std::vector<std::string> result;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    bool replaced = false;
    for (const HostVariable& variable : variables) {
      replaced = replaced || text.starts_with(variable.name + "=");
    }
    if (!replaced) result.emplace_back(text);
  }
  for (const HostVariable& variable : variables) {
    result.push_back(variable.name + "=" + variable.value);
  }
  return result;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// Becomes the program. Runs between fork and exec, so it makes system calls only.
[[noreturn]] void Become(const char* program, char* const* arguments, char* const* environment,
                         int report) {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (int standard = 0; standard < 3; ++standard) dup2(nothing, standard);
  // On a kernel without the call, what was opened with O_CLOEXEC is closed all the same.
  close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
  execve(program, arguments, environment);
  const int error = errno;
  if (write(report, &error, sizeof error) != sizeof error) _exit(126);
  _exit(127);
}

/// What comes through the pipe before it closes: an error, or nothing for a program that runs.
int ReadReport(int pipe) {
  int error = 0;
  while (true) {
    const ssize_t count = read(pipe, &error, sizeof error);
    if (count < 0 && errno == EINTR) continue;
    return count == sizeof error ? error : 0;
  }
}

}  // namespace

int StartDetached(const std::vector<std::string>& arguments,
                  const std::vector<HostVariable>& variables) {
  const auto program = FindProgram(arguments.front());
  if (!program) return ENOENT;
  // Everything that needs memory is made ready before the fork.
  std::vector<std::string> argumentTexts = arguments;
  std::vector<std::string> environmentTexts = EnvironmentWith(variables);
  const std::vector<char*> argumentPointers = Pointers(argumentTexts);
  const std::vector<char*> environmentPointers = Pointers(environmentTexts);
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return errno;
  const FileDescriptor reading(ends[0]);
  FileDescriptor writing(ends[1]);

  const pid_t middle = fork();
  if (middle < 0) return errno;
  if (middle == 0) {
    setsid();
    const pid_t child = fork();
    if (child == 0) {
      Become(program->c_str(), argumentPointers.data(), environmentPointers.data(), writing.get());
    }
    const int error = child < 0 ? errno : 0;
    if (error != 0 && write(writing.get(), &error, sizeof error) != sizeof error) _exit(1);
    _exit(0);
  }
  writing.reset();
  while (waitpid(middle, nullptr, 0) < 0 && errno == EINTR) {
  }
  return ReadReport(reading.get());
}

}  // namespace torvane::posix
