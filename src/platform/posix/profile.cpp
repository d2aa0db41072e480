// The profile calls: which file a path means, and how values and lists fill a caller's buffer.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/posix/code_page.h"
#include "platform/posix/drive_paths.h"
#include "platform/posix/last_error.h"
#include "platform/posix/profile_file.h"
#include "platform/winapi.h"

namespace torvane::posix {
namespace {

/// The file that a path names; a bare file name means the Windows folder. Null where there is no
/// such folder.
ProfileFile* FileOf(LPCSTR path) {
  std::u16string full = path != nullptr ? FromCodePage(path) : u"win.ini";
  if (full.find_first_of(u"\\/:") == std::u16string::npos) full = u"C:\\windows\\" + full;
  auto host = FindHostPath(full);
  if (!host) host = HostPathForNew(full);
  return host ? &OpenProfile(*host) : nullptr;
}

std::optional<std::u16string> Wide(LPCSTR text) {
  if (text == nullptr) return std::nullopt;
  return FromCodePage(text);
}

/// Takes off one pair of quotes around a value.
std::string_view Unquote(std::string_view value) {
  if (value.size() < 2 || value.front() != value.back()) return value;
  if (value.front() != '"' && value.front() != '\'') return value;
  return value.substr(1, value.size() - 2);
}

DWORD CopyValue(std::string_view value, LPSTR buffer, DWORD size) {
  const std::string_view text = Unquote(value).substr(0, size - 1);
  std::copy(text.begin(), text.end(), buffer);
  buffer[text.size()] = '\0';
  return static_cast<DWORD>(text.size());
}

/// Copies names, each closed by a NUL, with one more NUL behind the last. As Windows has it, a list
/// needs two characters more than its names to be complete.
DWORD CopyNames(const std::vector<std::u16string>& names, LPSTR buffer, DWORD size) {
  std::string list;
  for (const std::u16string& name : names) list += ToCodePage(name) + '\0';
  if (size < 2) {
    std::fill_n(buffer, size, '\0');
    return 0;
  }
  const std::size_t length = std::min<std::size_t>(list.size(), size - 2);
  std::copy_n(list.data(), length, buffer);
  buffer[length] = '\0';
  if (length < list.size()) buffer[length + 1] = '\0';
  return static_cast<DWORD>(length);
}

std::string WithoutBlanksBehind(LPCSTR text) {
  std::string result = text != nullptr ? text : "";
  result.resize(result.find_last_not_of(' ') + 1);
  return result;
}

void Fail(const std::system_error& error) {
  SetLastError(WindowsError(error.code().value()));
}

}  // namespace
}  // namespace torvane::posix

using namespace torvane::posix;

DWORD GetPrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR buffer,
                               DWORD size, LPCSTR path) {
  if (size == 0) return 0;
  try {
    if (ProfileFile* file = FileOf(path)) {
      const ProfileText& text = file->text();
      if (section == nullptr) return CopyNames(text.sections(), buffer, size);
      if (key == nullptr) {
        if (const auto keys = text.keys(FromCodePage(section))) {
          return CopyNames(*keys, buffer, size);
        }
      } else if (const auto value = text.value(FromCodePage(section), FromCodePage(key))) {
        return CopyValue(ToCodePage(*value), buffer, size);
      }
    }
  } catch (const std::system_error& error) {
    Fail(error);
  }
  return CopyValue(WithoutBlanksBehind(fallback), buffer, size);
}

BOOL WritePrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR path) {
  ProfileFile* file = FileOf(path);
  if (file == nullptr) {
    SetLastError(ERROR_PATH_NOT_FOUND);
    return FALSE;
  }
  try {
    if (section != nullptr) {
      file->change(FromCodePage(section), Wide(key), key != nullptr ? Wide(value) : std::nullopt);
      return TRUE;
    }
    SetLastError(ERROR_FILE_NOT_FOUND);
    // With nothing named the call asks for what waits to be written, and gives FALSE all the same.
    if (key == nullptr && value == nullptr && file->hasChanges()) {
      file->writeBack();
      UnmarkChanged(*file);
    }
  } catch (const std::system_error& error) {
    Fail(error);
  }
  return FALSE;
}
