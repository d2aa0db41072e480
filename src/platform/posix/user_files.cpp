// The user's own files: they lie on the host, whatever prefix is open.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "platform/extras.h"
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
  std::error_code error;
  if (!fs::exists(path, error) && !error) return {};
  UserFile file{posix::FromUtf8(path.string()), std::nullopt};
  std::ifstream stream(path, std::ios::binary);
  if (fs::is_regular_file(path, error) && stream) {
    file.bytes.emplace(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  return {file};
}

}  // namespace torvane
