// What a write to a profile file would destroy. Windows knows one mark, that of UTF-16 in its own
// byte order; Wine knows the other two as well.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/extras.h"
#include "platform/sizes.h"
#include "platform/winapi.h"

namespace torvane {
namespace {

/// An open file or folder, closed with its scope.
class OpenFile {
 public:
  /// The one that a path means to the profile calls.
  explicit OpenFile(const std::u16string& path) {
    std::u16string full = path;
    if (full.find_first_of(u"\\/:") == std::u16string::npos) {
      full =
          TextOfCall([](WCHAR* buffer, DWORD size) { return GetWindowsDirectoryW(buffer, size); });
      full += u'\\' + path;
    }
    handle_ = CreateFileW(Wide(full), GENERIC_READ,
                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle_ == INVALID_HANDLE_VALUE) error_ = GetLastError();
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
  }

  /// Why it isn't open; ERROR_SUCCESS where it is.
  DWORD error() const { return error_; }

  /// In bytes, 0 for none.
  std::uint64_t size() const {
    LARGE_INTEGER size{};
    if (error_ != ERROR_SUCCESS || GetFileSizeEx(handle_, &size) == FALSE) return 0;
    return static_cast<std::uint64_t>(size.QuadPart);
  }

  /// Up to so many bytes; none where it can't be read.
  std::string read(std::uint64_t most) const {
    std::string bytes(static_cast<std::size_t>(std::min(most, size())), '\0');
    DWORD count = 0;
    if (bytes.empty() || ReadFile(handle_, bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                                  nullptr) == FALSE) {
      count = 0;
    }
    bytes.resize(count);
    return bytes;
  }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
  DWORD error_ = ERROR_SUCCESS;
};

constexpr std::uint64_t kMarkSize = 3;

bool KnowsOtherMarks() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

std::u16string TextIn(UINT page, const std::string& bytes) {
  std::u16string text(bytes.size(), u'\0');
  text.resize(static_cast<std::size_t>(
      MultiByteToWideChar(page, 0, bytes.data(), static_cast<int>(bytes.size()), WideBuffer(text),
                          static_cast<int>(text.size()))));
  return text;
}

std::string BytesIn(UINT page, std::u16string_view text) {
  constexpr std::size_t kMostBytesOfUnit = 4;
  std::string bytes(text.size() * kMostBytesOfUnit, '\0');
  bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(
      page, 0, reinterpret_cast<LPCWSTR>(text.data()), static_cast<int>(text.size()), bytes.data(),
      static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

bool IsUtf16Little(const std::string& front) {
  return front.starts_with("\xFF\xFE");
}
bool IsUtf16Big(const std::string& front) {
  return front.starts_with("\xFE\xFF");
}
bool IsUtf8(const std::string& front) {
  return front.starts_with("\xEF\xBB\xBF");
}

std::u16string SystemsWords(DWORD error) {
  std::u16string words(512, u'\0');
  words.resize(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                              error, 0, WideBuffer(words), static_cast<DWORD>(words.size()),
                              nullptr));
  words.resize(words.find_last_not_of(u". \r\n") + 1);
  return words;
}

}  // namespace

ProfileHarm HarmToProfile(const std::u16string& path, std::u16string_view text) {
  const std::string front = OpenFile(path).read(kMarkSize);
  if (IsUtf16Little(front)) return ProfileHarm::None;
  if ((IsUtf16Big(front) || IsUtf8(front)) && !KnowsOtherMarks()) return ProfileHarm::UnknownMark;
  if (IsUtf16Big(front)) return ProfileHarm::None;
  const UINT page = IsUtf8(front) ? CP_UTF8 : CP_ACP;
  return TextIn(page, BytesIn(page, text)) == text ? ProfileHarm::None : ProfileHarm::OutsidePage;
}

// The calls write the whole file anew, from its text.
bool HasBrokenText(const std::u16string& path, const std::u16string& /*section*/) {
  const std::string bytes = OpenFile(path).read(kMostProfileBytes);
  if (IsUtf16Little(bytes) || IsUtf16Big(bytes)) return false;
  const UINT page = IsUtf8(bytes) ? CP_UTF8 : CP_ACP;
  return BytesIn(page, TextIn(page, bytes)) != bytes;
}

std::u16string ProfileProblem(const std::u16string& path) {
  const OpenFile file(path);
  if (file.error() == ERROR_FILE_NOT_FOUND || file.error() == ERROR_PATH_NOT_FOUND) return {};
  if (file.error() != ERROR_SUCCESS) return u"can't be read: " + SystemsWords(file.error());
  if (file.size() <= kMostProfileBytes) return {};
  const std::string sizes = SizesInWords(file.size(), kMostProfileBytes);
  return {sizes.begin(), sizes.end()};
}

}  // namespace torvane
