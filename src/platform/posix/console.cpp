#include "platform/console.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <system_error>
#include <thread>

#include "platform/posix/disk/file_descriptor.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/disk/write_back.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/prefix/wine_server.h"
#include "platform/posix/registry/registry.h"

namespace torvane {
namespace {

std::string LastReason() {
  return std::generic_category().message(errno);
}

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// The found prefixes of that name; without case among letters of ASCII.
std::vector<posix::FoundPrefix> PrefixesOfName(const std::string& name) {
  const auto same = [](unsigned char left, unsigned char right) {
    const auto lower = [](unsigned char c) { return c >= 'A' && c <= 'Z' ? c + 32 : int{c}; };
    return lower(left) == lower(right);
  };
  std::vector<posix::FoundPrefix> found = posix::FindPrefixes();
  std::erase_if(found, [&](const posix::FoundPrefix& prefix) {
    return !std::ranges::equal(prefix.name, name, same);
  });
  return found;
}

void Choose(const std::string& named) {
  if (posix::PrefixIn(named)) return posix::ChoosePrefix(posix::PrefixNamed(named));
  const auto found = PrefixesOfName(named);
  if (found.size() == 1) return posix::ChoosePrefix(found.front());
  if (found.size() > 1)
    throw posix::PrefixError("Several prefixes are called " + named + "; name the folder of one.");
  throw posix::PrefixError("There is no prefix " + named +
                           ": it is no folder with a drive_c, and none is found by that name; "
                           "\"torvane-cli prefixes\" lists those that are.");
}

/// The links of the drives. No file lies there, so its lock doesn't meet with those of files.
constexpr const char* kDriveFolder = "dosdevices";

class FolderTurn : public Turn {
 public:
  explicit FolderTurn(posix::FileDescriptor folder) : folder_(std::move(folder)) {}

 private:
  posix::FileDescriptor folder_;
};

}  // namespace

std::vector<std::string> ConsoleArguments(int count, char** arguments) {
  return {arguments + std::min(count, 1), arguments + count};
}

bool IsTerminal(Stream stream) {
  return isatty(stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO) != 0;
}

void PrepareConsole() {
  // Writing to such a stand-in fails, as it does to a closed stream.
  int descriptor = 0;
  do descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
  while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) close(descriptor);
  std::signal(SIGPIPE, SIG_IGN);
}

bool WriteOutput(std::string_view bytes) {
  return WriteAll(STDOUT_FILENO, bytes) || errno == EPIPE;
}

std::string WriteNewFile(const std::string& path, std::string_view bytes) {
  const std::string temporary = path + ".part-" + std::to_string(getpid());
  const posix::FileDescriptor file(
      open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file) return LastReason();
  // A link is made only where no file of that name is.
  std::string reason;
  if (!WriteAll(file.get(), bytes) || fsync(file.get()) != 0 ||
      link(temporary.c_str(), path.c_str()) != 0)
    reason = LastReason();
  unlink(temporary.c_str());
  return reason;
}

std::vector<FoundWorld> FoundWorlds() {
  std::vector<FoundWorld> worlds;
  for (const posix::FoundPrefix& prefix : posix::FindPrefixes()) {
    worlds.push_back(
        {prefix.name, prefix.manager, prefix.root.native(), posix::WineServerRuns(prefix.root)});
  }
  return worlds;
}

OpenedWorld OpenWorld(const std::string& named) {
  try {
    if (!named.empty()) Choose(named);
    posix::PrefixRoot();
    return {{}, posix::HiveProblems(posix::Hives::Written)};
  } catch (const posix::PrefixError& error) {
    return {error.what(), {}};
  }
}

bool IsWorldInUse() {
  return posix::WineServerRuns(posix::PrefixRoot());
}

std::string WhyRefused() {
  return posix::TakeRefusalNote();
}

std::vector<CommitFailure> CommitChanges() {
  using Kind = posix::WriteFailureKind;
  std::vector<CommitFailure> failures;
  for (const posix::WriteFailure& failure : posix::WriteBackChanges()) {
    const bool stands = failure.kind == Kind::OldStands || failure.kind == Kind::HeldByUse;
    failures.push_back({failure.path +
                            (stands ? " can't be written: " : " is written, but may not last: ") +
                            failure.reason,
                        failure.kind == Kind::HeldByUse});
  }
  if (!failures.empty()) posix::ForgetWorld();
  return failures;
}

std::unique_ptr<Turn> WaitForTurn() {
  using namespace std::chrono_literals;
  const auto end = std::chrono::steady_clock::now() + 60s;
  posix::FileDescriptor folder(
      open((posix::PrefixRoot() / kDriveFolder).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  while (folder && flock(folder.get(), LOCK_EX | LOCK_NB) != 0) {
    if (std::chrono::steady_clock::now() > end) return nullptr;
    std::this_thread::sleep_for(10ms);
  }
  return std::make_unique<FolderTurn>(std::move(folder));
}

}  // namespace torvane
