// The user's own files: they lie on the host, whatever prefix is open.
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/extras.h"
#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/text/code_page.h"

namespace torvane {
namespace {

namespace fs = std::filesystem;

/// A relative $XDG_CONFIG_HOME counts as none.
fs::path ConfigurationFolder() {
  const char* const set = std::getenv("XDG_CONFIG_HOME");
  if (set != nullptr && fs::path(set).is_absolute()) return set;
  const char* const home = std::getenv("HOME");
  return home == nullptr ? fs::path() : fs::path(home) / ".config";
}

}  // namespace

std::vector<UserFile> ReadUserFiles(std::u16string_view name) {
  const fs::path folder = ConfigurationFolder();
  if (folder.empty()) return {};
  const fs::path path = folder / "torvane" / fs::path(name);
  UserFile file{posix::FromUtf8(path.string()), std::nullopt};
  try {
    const posix::FileContent content = posix::ReadWholeFile(path, kMostUserBytes);
    if (!content.stamp.exists()) return {};
    file.bytes.emplace(content.view());
  } catch (const posix::FileTooLarge&) {
    file.isTooLarge = true;
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::not_a_directory) return {};
    // The user is told that it can't be read.
  }
  return {file};
}

}  // namespace torvane
