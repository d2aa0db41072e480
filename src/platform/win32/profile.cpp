// What a write to a profile file would destroy. Windows knows one mark, that of UTF-16 in its own
// byte order; Wine knows the other two as well.
#include <array>
#include <string_view>

#include "platform/extras.h"
#include "platform/winapi.h"

namespace torvane {
namespace {

/// The first bytes of the file that a path means to the profile calls; empty for none.
std::string FrontOf(const std::u16string& path) {
  std::u16string full = path;
  if (full.find_first_of(u"\\/:") == std::u16string::npos) {
    std::array<WCHAR, MAX_PATH> folder{};
    const UINT length = GetWindowsDirectoryW(folder.data(), MAX_PATH);
    full = std::u16string(folder.begin(), folder.begin() + std::min<UINT>(length, MAX_PATH));
    full += u'\\' + path;
  }
  const HANDLE file = CreateFileW(reinterpret_cast<LPCWSTR>(full.c_str()), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::array<char, 3> front{};
  DWORD read = 0;
  if (ReadFile(file, front.data(), static_cast<DWORD>(front.size()), &read, nullptr) == FALSE) {
    read = 0;
  }
  CloseHandle(file);
  return {front.data(), read};
}

bool KnowsOtherMarks() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

/// Whether the text comes back from bytes of a code page.
bool SurvivesPage(UINT page, std::u16string_view text) {
  if (text.empty()) return true;
  const auto units = static_cast<int>(text.size());
  std::string bytes(text.size() * 4, '\0');
  const int size =
      WideCharToMultiByte(page, 0, reinterpret_cast<LPCWSTR>(text.data()), units, bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr);
  std::u16string back(bytes.size(), u'\0');
  const int length =
      MultiByteToWideChar(page, 0, bytes.data(), size, reinterpret_cast<LPWSTR>(back.data()),
                          static_cast<int>(back.size()));
  return std::u16string_view(back).substr(0, static_cast<std::size_t>(length)) == text;
}

}  // namespace

ProfileHarm HarmToProfile(const std::u16string& path, std::u16string_view text) {
  const std::string front = FrontOf(path);
  if (front.starts_with("\xFF\xFE")) return ProfileHarm::None;
  const bool isBig = front.starts_with("\xFE\xFF");
  const bool isUtf8 = front.starts_with("\xEF\xBB\xBF");
  if ((isBig || isUtf8) && !KnowsOtherMarks()) return ProfileHarm::UnknownMark;
  if (isBig) return ProfileHarm::None;
  const UINT page = isUtf8 ? CP_UTF8 : CP_ACP;
  return SurvivesPage(page, text) ? ProfileHarm::None : ProfileHarm::OutsidePage;
}

}  // namespace torvane
