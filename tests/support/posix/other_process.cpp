#include "support/posix/other_process.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <system_error>

namespace torvane::testing {

OtherProcess::OtherProcess(const std::function<bool()>& first,
                           const std::vector<std::string>& command) {
  std::array<int, 2> ready{};
  if (pipe(ready.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  child_ = fork();
  if (child_ == 0) {
    const char done = first() ? 'y' : 'n';
    std::vector<char*> words;
    for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    if (write(ready[1], &done, 1) != 1) _exit(1);
    if (!command.empty()) execvp(words.front(), words.data());
    if (command.empty()) pause();
    _exit(0);
  }
  close(ready[1]);
  char done = 0;
  stands = read(ready[0], &done, 1) == 1 && done == 'y';
  close(ready[0]);
}

OtherProcess::~OtherProcess() {
  kill(child_, SIGKILL);
  waitpid(child_, nullptr, 0);
}

bool EnterSandbox(const std::filesystem::path& kept) {
  const int namespaces = CLONE_NEWNS | (geteuid() == 0 ? 0 : CLONE_NEWUSER);
  return unshare(namespaces) == 0 &&
         mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount(kept.c_str(), "/mnt", nullptr, MS_BIND, nullptr) == 0 &&
         mount("none", "/tmp", "tmpfs", 0, nullptr) == 0;
}

bool LockAsServer(const std::filesystem::path& file, off_t length) {
  const int descriptor = open(file.c_str(), O_CREAT | O_RDWR, 0600);
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_len = length;
  return fcntl(descriptor, F_SETLK, &lock) == 0;
}

}  // namespace torvane::testing
