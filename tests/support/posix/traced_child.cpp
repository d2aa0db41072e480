#include "support/posix/traced_child.h"

#include <sys/ptrace.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <system_error>

#if !defined(__x86_64__)
#error "the registers are those of x86-64"
#endif

namespace torvane::testing {
namespace {

user_regs_struct Registers(pid_t child) {
  user_regs_struct registers{};
  ptrace(PTRACE_GETREGS, child, nullptr, &registers);
  return registers;
}

[[noreturn]] void RunTraced(const std::function<void()>& body) {
  ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
  raise(SIGSTOP);
  body();
  _exit(0);
}

}  // namespace

TracedChild::TracedChild(const std::function<void()>& body) : pid_(fork()) {
  if (pid_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (pid_ == 0) RunTraced(body);
  int status = 0;
  if (waitpid(pid_, &status, 0) != pid_ || !WIFSTOPPED(status) ||
      ptrace(PTRACE_SETOPTIONS, pid_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) != 0)
    throw std::system_error(errno, std::generic_category(), "ptrace");
}

TracedChild::~TracedChild() {
  if (ended_) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

/// Runs to where a call begins or ends; gives false where the child ends.
bool TracedChild::runToStop() {
  constexpr int kCallStop = SIGTRAP | 0x80;
  int status = 0;
  do {
    if (ptrace(PTRACE_SYSCALL, pid_, nullptr, nullptr) != 0 || waitpid(pid_, &status, 0) != pid_)
      throw std::system_error(errno, std::generic_category(), "ptrace");
    ended_ = WIFEXITED(status) || WIFSIGNALED(status);
    // A signal other than a call's would be lost here; only a crash sends one.
    if (WIFSTOPPED(status) && WSTOPSIG(status) != kCallStop) kill(pid_, SIGKILL);
  } while (!ended_ && WSTOPSIG(status) != kCallStop);
  endedWell_ = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return !ended_;
}

std::optional<long> TracedChild::next() {
  while (!ended_ && runToStop()) {
    const user_regs_struct registers = Registers(pid_);
    // The kernel sets this result when a call begins, and no call that is seen here ends with it.
    const bool begins = static_cast<long>(registers.rax) == -ENOSYS;
    if (begins) return static_cast<long>(registers.orig_rax);
  }
  return std::nullopt;
}

bool TracedChild::names(std::string_view front) const {
  const user_regs_struct registers = Registers(pid_);
  for (const unsigned long long argument : {registers.rdi, registers.rsi}) {
    std::string text(front.size(), '\0');
    const iovec here{text.data(), text.size()};
    const iovec there{reinterpret_cast<void*>(argument), text.size()};
    // What is no address can't be read.
    const ssize_t size = process_vm_readv(pid_, &here, 1, &there, 1, 0);
    if (size == static_cast<ssize_t>(front.size()) && text == front) return true;
  }
  return false;
}

void TracedChild::fail(int error) {
  user_regs_struct registers = Registers(pid_);
  registers.orig_rax = static_cast<unsigned long long>(-1LL);
  ptrace(PTRACE_SETREGS, pid_, nullptr, &registers);
  if (!runToStop()) return;
  registers = Registers(pid_);
  registers.rax = static_cast<unsigned long long>(-static_cast<long long>(error));
  ptrace(PTRACE_SETREGS, pid_, nullptr, &registers);
}

void TracedChild::cutWrite(unsigned long bytes) {
  user_regs_struct registers = Registers(pid_);
  registers.rdx = bytes;
  ptrace(PTRACE_SETREGS, pid_, nullptr, &registers);
}

}  // namespace torvane::testing
