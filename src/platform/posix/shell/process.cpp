// Windows programs run under the host's `wine`, in this prefix, each argument handed over as it is.
#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/posix/disk/write_back.h"
#include "platform/posix/paths/drive_paths.h"
#include "platform/posix/paths/environment.h"
#include "platform/posix/paths/windows_path.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/shell/command_line.h"
#include "platform/posix/shell/spawn.h"
#include "platform/posix/text/code_page.h"
#include "platform/posix/text/last_error.h"
#include "platform/winapi.h"

namespace torvane::posix {
namespace {

bool IsFile(std::u16string_view path) {
  const auto host = FindHostPath(path);
  struct stat status {};
  return host && stat(host->c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// A path from its drive on, for a program whose current folder is not ours.
std::u16string FullPath(const std::u16string& path) {
  const auto parts = SplitWindowsPath(path);
  if (!parts || parts->drive == 0 || path.starts_with(u"\\\\")) return path;
  std::u16string full{static_cast<char16_t>(parts->drive - u'a' + u'A'), u':'};
  for (const std::u16string& part : parts->parts) full += u"\\" + part;
  return full;
}

/// The full path of an existing program; a bare name is looked for in the current folder, the
/// system folders and those of %PATH%.
std::optional<std::u16string> FindProgram(const std::u16string& name) {
  if (name.find_first_of(u"\\/:") != std::u16string::npos) {
    return IsFile(name) ? std::optional(FullPath(name)) : std::nullopt;
  }
  const std::u16string folders = u"C:\\;C:\\windows\\system32;C:\\windows;" +
                                 EnvironmentVariable(u"PATH").value_or(u"") + u";";
  for (std::size_t start = 0; start < folders.size();) {
    const std::size_t end = folders.find(u';', start);
    std::u16string path = folders.substr(start, end - start);
    start = end + 1;
    if (path.empty()) continue;
    if (path.back() != u'\\') path += u'\\';
    path += name;
    if (IsFile(path)) return path;
  }
  return std::nullopt;
}

/// A program that is named apart from its command line, which begins with some name for it.
std::optional<ProgramCall> NamedCall(const std::u16string& program,
                                     std::u16string_view commandLine) {
  if (!IsFile(program)) return std::nullopt;
  return ProgramCall{FullPath(program), std::u16string(BehindProgram(commandLine))};
}

}  // namespace
}  // namespace torvane::posix

using namespace torvane::posix;

BOOL CreateProcessW(LPCWSTR program, LPWSTR commandLine, SECURITY_ATTRIBUTES* /*process*/,
                    SECURITY_ATTRIBUTES* /*thread*/, BOOL /*inherit*/, DWORD /*flags*/,
                    void* /*environment*/, LPCWSTR /*folder*/, STARTUPINFOW* /*start*/,
                    PROCESS_INFORMATION* started) {
  *started = {};
  const auto call = program != nullptr ? NamedCall(program, commandLine)
                                       : FindProgramCall(commandLine, FindProgram);
  if (!call) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    return FALSE;
  }
  std::vector<std::string> arguments{"wine", ToUtf8(call->program)};
  for (const std::u16string& argument : SplitArguments(call->arguments)) {
    arguments.push_back(ToUtf8(argument));
  }
  // The program is to find what the user has just edited. What can't be written stays on the list,
  // and the window's loop tells the user.
  WriteBackChanges();
  const int error = StartDetached(arguments, {{"WINEPREFIX", PrefixRoot().string()}});
  SetLastError(WindowsError(error));
  return error == 0 ? TRUE : FALSE;
}
