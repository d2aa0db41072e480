// The profile calls: which file a path means, and how values and lists fill a caller's buffer.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/extras.h"
#include "platform/posix/paths/drive_paths.h"
#include "platform/posix/profile/profile_file.h"
#include "platform/posix/text/code_page.h"
#include "platform/posix/text/last_error.h"
#include "platform/winapi.h"

namespace torvane::posix {
namespace {

/// The file that a path names; a bare file name means the Windows folder. Null where there is no
/// such folder.
ProfileFile* FileOf(const std::optional<std::u16string>& path) {
  std::u16string full = path.value_or(u"win.ini");
  if (full.find_first_of(u"\\/:") == std::u16string::npos) full = u"C:\\windows\\" + full;
  auto host = FindHostPath(full);
  if (!host) host = HostPathForNew(full);
  return host ? &OpenProfile(*host) : nullptr;
}

std::optional<std::u16string> Given(LPCWSTR text) {
  if (text == nullptr) return std::nullopt;
  return text;
}

/// Takes off one pair of quotes around a value.
std::u16string_view Unquote(std::u16string_view value) {
  if (value.size() < 2 || value.front() != value.back()) return value;
  if (value.front() != u'"' && value.front() != u'\'') return value;
  return value.substr(1, value.size() - 2);
}

DWORD CopyValue(std::u16string_view value, LPWSTR buffer, DWORD size) {
  const std::u16string_view text = Unquote(value).substr(0, size - 1);
  std::copy(text.begin(), text.end(), buffer);
  buffer[text.size()] = u'\0';
  return static_cast<DWORD>(text.size());
}

/// Copies texts, each closed by a NUL, with one more NUL behind the last. As Windows has it, a list
/// needs two characters more than its texts to be complete.
DWORD CopyList(const std::vector<std::u16string>& texts, LPWSTR buffer, DWORD size) {
  std::u16string list;
  for (const std::u16string& text : texts) list += text + u'\0';
  if (size < 2) {
    std::fill_n(buffer, size, u'\0');
    return 0;
  }
  const std::size_t length = std::min<std::size_t>(list.size(), size - 2);
  std::copy_n(list.data(), length, buffer);
  buffer[length] = u'\0';
  if (length < list.size()) buffer[length + 1] = u'\0';
  return static_cast<DWORD>(length);
}

std::u16string WithoutBlanksBehind(LPCWSTR text) {
  std::u16string result = text != nullptr ? text : u"";
  result.resize(result.find_last_not_of(u' ') + 1);
  return result;
}

void Fail(const std::system_error& error) {
  SetLastError(WindowsError(error.code().value()));
}

}  // namespace
}  // namespace torvane::posix

torvane::ProfileHarm torvane::HarmToProfile(const std::u16string& path, std::u16string_view text) {
  try {
    posix::ProfileFile* file = posix::FileOf(path);
    const bool holds = file == nullptr || file->text().canHold(text);
    return holds ? ProfileHarm::None : ProfileHarm::OutsidePage;
  } catch (const std::system_error&) {
    return ProfileHarm::None;
  }
}

bool torvane::HasBrokenText(const std::u16string& path, const std::u16string& section) {
  try {
    posix::ProfileFile* file = posix::FileOf(path);
    return file != nullptr && file->text().isBroken(section);
  } catch (const std::system_error&) {
    return false;
  }
}

std::u16string torvane::ProfileProblem(const std::u16string& path) {
  try {
    if (posix::ProfileFile* file = posix::FileOf(path)) file->text();
    return {};
  } catch (const posix::FileTooLarge& error) {
    return posix::FromUtf8(error.sizes());
  } catch (const std::system_error& error) {
    return posix::FromUtf8("can't be read: " + posix::ReasonOf(error));
  }
}

using namespace torvane::posix;

DWORD GetPrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR fallback, LPWSTR buffer,
                               DWORD size, LPCWSTR path) {
  if (size == 0) return 0;
  try {
    if (ProfileFile* file = FileOf(Given(path))) {
      const ProfileText& text = file->text();
      if (section == nullptr) return CopyList(text.sections(), buffer, size);
      if (key == nullptr) {
        if (const auto keys = text.keys(section)) return CopyList(*keys, buffer, size);
      } else if (const auto value = text.value(section, key)) {
        return CopyValue(*value, buffer, size);
      }
    }
  } catch (const std::system_error& error) {
    Fail(error);
  }
  return CopyValue(WithoutBlanksBehind(fallback), buffer, size);
}

DWORD GetPrivateProfileSectionW(LPCWSTR section, LPWSTR buffer, DWORD size, LPCWSTR path) {
  if (section == nullptr || buffer == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  try {
    if (ProfileFile* file = FileOf(Given(path))) {
      return CopyList(file->text().entries(section), buffer, size);
    }
  } catch (const std::system_error& error) {
    Fail(error);
  }
  return CopyList({}, buffer, size);
}

BOOL WritePrivateProfileSectionW(LPCWSTR section, LPCWSTR lines, LPCWSTR path) {
  if (section == nullptr || lines == nullptr)
    return WritePrivateProfileStringW(section, nullptr, nullptr, path);
  ProfileFile* file = FileOf(Given(path));
  if (file == nullptr) {
    SetLastError(ERROR_PATH_NOT_FOUND);
    return FALSE;
  }
  std::vector<std::u16string> entries;
  for (; *lines != u'\0'; lines += entries.back().size() + 1) entries.emplace_back(lines);
  try {
    file->changeEntries(section, std::move(entries));
    return TRUE;
  } catch (const std::system_error& error) {
    Fail(error);
    return FALSE;
  }
}

BOOL WritePrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR value, LPCWSTR path) {
  ProfileFile* file = FileOf(Given(path));
  if (file == nullptr) {
    SetLastError(ERROR_PATH_NOT_FOUND);
    return FALSE;
  }
  try {
    if (section != nullptr) {
      file->change(section, Given(key), key != nullptr ? Given(value) : std::nullopt);
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
