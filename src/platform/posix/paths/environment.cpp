// Three sources make up the variables, each over the one before: the host's environment, what every
// Windows has, and what the prefix's registry says for the machine and for the user.
#include "platform/posix/paths/environment.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/posix/disk/forget.h"
#include "platform/posix/registry/registry.h"
#include "platform/posix/text/code_page.h"
#include "platform/posix/text/letter_case.h"
#include "platform/winapi.h"

namespace torvane::posix {
namespace {

/// Values by folded name.
using Variables = std::unordered_map<std::u16string, std::u16string>;

/// Host variables that mean something else, or nothing, to a Windows program.
constexpr std::array<std::u16string_view, 4> kHostOnly{u"home", u"path", u"temp", u"tmp"};

std::u16string Expand(std::u16string_view text, const Variables& variables) {
  std::u16string result;
  std::u16string_view lastName;
  auto known = variables.end();
  while (!text.empty()) {
    const std::size_t start = text.find(u'%');
    const std::size_t end = start < text.size() ? text.find(u'%', start + 1) : start;
    if (end == std::u16string_view::npos) break;
    result += text.substr(0, start);
    const std::u16string_view name = text.substr(start + 1, end - start - 1);
    if (name != lastName || known == variables.end()) known = variables.find(FoldCase(name));
    lastName = name;
    result += known != variables.end() ? std::u16string_view(known->second)
                                       : text.substr(start, end + 1 - start);
    text.remove_prefix(end + 1);
  }
  result += text;
  return result;
}

void AddHostVariables(Variables& variables) {
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const char* equals = std::strchr(*entry, '=');
    if (equals == nullptr) continue;
    const auto length = static_cast<std::size_t>(equals - *entry);
    std::u16string name = FoldCase(FromUtf8({*entry, length}));
    if (std::find(kHostOnly.begin(), kHostOnly.end(), name) == kHostOnly.end()) {
      variables[std::move(name)] = FromUtf8(equals + 1);
    }
  }
}

std::u16string UserName() {
  const char* named = std::getenv("USER");
  if (named != nullptr && *named != '\0') return FromUtf8(named);
  const passwd* user = getpwuid(getuid());
  return user != nullptr ? FromUtf8(user->pw_name) : u"user";
}

std::u16string HostName() {
  std::array<char, 256> name{};
  if (gethostname(name.data(), name.size() - 1) != 0) return u"HOST";
  return FromUtf8(name.data());
}

/// What Windows sets itself, in terms of what stands above.
void AddDefaults(Variables& variables) {
  constexpr std::u16string_view kVersionKey = u"Software\\Microsoft\\Windows\\CurrentVersion";
  const std::u16string programs =
      MachineText(kVersionKey, u"ProgramFilesDir").value_or(u"C:\\Program Files");
  const std::u16string programs86 =
      MachineText(kVersionKey, u"ProgramFilesDir (x86)").value_or(u"C:\\Program Files (x86)");
  const std::pair<std::u16string_view, std::u16string> defaults[] = {
      {u"SystemDrive", u"C:"},
      {u"SystemRoot", u"C:\\windows"},
      {u"windir", u"%SystemRoot%"},
      {u"ComSpec", u"%SystemRoot%\\system32\\cmd.exe"},
      {u"PATH", u"%SystemRoot%\\system32;%SystemRoot%"},
      {u"OS", u"Windows_NT"},
      {u"ProgramFiles", programs},
      {u"ProgramW6432", programs},
      {u"ProgramFiles(x86)", programs86},
      {u"CommonProgramFiles", programs + u"\\Common Files"},
      {u"CommonProgramW6432", programs + u"\\Common Files"},
      {u"CommonProgramFiles(x86)", programs86 + u"\\Common Files"},
      {u"ProgramData", u"C:\\ProgramData"},
      {u"ALLUSERSPROFILE", u"%ProgramData%"},
      {u"PUBLIC", u"C:\\users\\Public"},
      {u"COMPUTERNAME", HostName()},
      {u"USERNAME", UserName()},
      {u"HOMEDRIVE", u"C:"},
      {u"HOMEPATH", u"\\users\\%USERNAME%"},
      {u"USERPROFILE", u"C:\\users\\%USERNAME%"},
      {u"APPDATA", u"%USERPROFILE%\\AppData\\Roaming"},
      {u"LOCALAPPDATA", u"%USERPROFILE%\\AppData\\Local"},
      {u"TEMP", u"%USERPROFILE%\\Temp"},
      {u"TMP", u"%USERPROFILE%\\Temp"},
  };
  for (const auto& [name, value] : defaults) variables[FoldCase(name)] = Expand(value, variables);
}

struct CloseKey {
  // A key that was only read loses nothing by a failing close.
  void operator()(HKEY key) const { RegCloseKey(key); }
};

/// The text values of a key; those of type REG_EXPAND_SZ see what was added before them.
void AddKey(HKEY root, const char16_t* path, Variables& variables) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, path, 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) return;
  const std::unique_ptr<HKEY__, CloseKey> key(opened);
  DWORD longestName = 0;
  DWORD longestData = 0;
  if (RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       &longestName, &longestData, nullptr, nullptr) != ERROR_SUCCESS) {
    return;
  }
  std::u16string name(longestName + 1, u'\0');
  std::u16string data(longestData / sizeof(char16_t) + 1, u'\0');
  for (DWORD index = 0;; ++index) {
    auto nameSize = static_cast<DWORD>(name.size());
    auto dataSize = static_cast<DWORD>(data.size() * sizeof(char16_t));
    DWORD type = REG_NONE;
    if (RegEnumValueW(opened, index, name.data(), &nameSize, nullptr, &type,
                      reinterpret_cast<BYTE*>(data.data()), &dataSize) != ERROR_SUCCESS) {
      return;
    }
    if (type != REG_SZ && type != REG_EXPAND_SZ) continue;
    std::u16string value = data.substr(0, dataSize / sizeof(char16_t));
    value.resize(std::min(value.find(u'\0'), value.size()));
    if (type == REG_EXPAND_SZ) value = Expand(value, variables);
    const std::u16string folded = FoldCase(std::u16string_view(name).substr(0, nameSize));
    std::u16string& kept = variables[folded];
    // The user's search path goes behind the machine's.
    const bool joined = root == HKEY_CURRENT_USER && folded == u"path" && !kept.empty();
    if (joined) value.insert(0, kept + u";");
    kept = std::move(value);
  }
}

std::unique_ptr<const Variables>& Known() {
  static std::unique_ptr<const Variables> variables;
  return variables;
}

const AtForget kForgetVariables([] { Known().reset(); });

const Variables& AllVariables() {
  if (Known()) return *Known();
  auto variables = std::make_unique<Variables>();
  AddHostVariables(*variables);
  AddDefaults(*variables);
  AddKey(HKEY_LOCAL_MACHINE, u"System\\CurrentControlSet\\Control\\Session Manager\\Environment",
         *variables);
  AddKey(HKEY_CURRENT_USER, u"Volatile Environment", *variables);
  AddKey(HKEY_CURRENT_USER, u"Environment", *variables);
  Known() = std::move(variables);
  return *Known();
}

}  // namespace

std::optional<std::u16string> EnvironmentVariable(std::u16string_view name) {
  const auto known = AllVariables().find(FoldCase(name));
  if (known == AllVariables().end()) return std::nullopt;
  return known->second;
}

std::u16string ExpandVariables(std::u16string_view text) {
  return Expand(text, AllVariables());
}

}  // namespace torvane::posix

DWORD ExpandEnvironmentStringsW(LPCWSTR text, LPWSTR buffer, DWORD size) {
  const std::u16string result = torvane::posix::ExpandVariables(text);
  if (size > 0) {
    const std::size_t length = result.copy(buffer, size - 1);
    buffer[length] = u'\0';
  }
  return static_cast<DWORD>(result.size() + 1);
}
