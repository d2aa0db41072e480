// The registry says which page a prefix has, so the two calls that convert text stand here too.
#include "platform/posix/registry/ansi_page.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <string>

#include "platform/posix/disk/forget.h"
#include "platform/posix/registry/registry.h"
#include "platform/winapi.h"

namespace torvane::posix {
namespace {

/// The number that the prefix names; 0 for none.
unsigned PrefixCodePage() {
  const auto acp = MachineText(u"System\\CurrentControlSet\\Control\\Nls\\CodePage", u"ACP");
  const std::string digits = ToUtf8(acp.value_or(u""));
  unsigned page = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), page);
  return error == std::errc() && end == digits.data() + digits.size() ? page : 0;
}

std::unique_ptr<const CodePage>& CachedPage() {
  static std::unique_ptr<const CodePage> page;
  return page;
}

const AtForget kForgetPage([] { CachedPage().reset(); });

/// Copies a conversion's result as the two API calls do: its length for a size of 0.
template <typename Char>
int HandOut(const std::basic_string<Char>& result, Char* buffer, int size) {
  const auto length = static_cast<int>(result.size());
  if (size == 0) return length;
  std::copy_n(result.data(), std::min(length, size), buffer);
  if (length <= size) return length;
  SetLastError(ERROR_INSUFFICIENT_BUFFER);
  return 0;
}

/// The input of a conversion; -1 counts up to the closing NUL and takes it along.
template <typename Char>
std::basic_string_view<Char> Input(const Char* text, int count) {
  if (count >= 0) return {text, static_cast<std::size_t>(count)};
  return {text, std::char_traits<Char>::length(text) + 1};
}

}  // namespace

const CodePage& AnsiPage() {
  auto& page = CachedPage();
  if (!page) page = std::make_unique<const CodePage>(PrefixCodePage());
  return *page;
}

}  // namespace torvane::posix

int MultiByteToWideChar(UINT /*codePage*/, DWORD /*flags*/, LPCSTR bytes, int byteCount,
                        LPWSTR text, int textSize) {
  if (bytes == nullptr || byteCount == 0 || textSize < 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  using namespace torvane::posix;
  return HandOut(FromCodePage(Input(bytes, byteCount)), text, textSize);
}

int WideCharToMultiByte(UINT /*codePage*/, DWORD /*flags*/, LPCWSTR text, int textCount,
                        LPSTR bytes, int byteSize, LPCSTR /*defaultChar*/,
                        BOOL* /*usedDefaultChar*/) {
  if (text == nullptr || textCount == 0 || byteSize < 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  using namespace torvane::posix;
  return HandOut(ToCodePage(Input(text, textCount)), bytes, byteSize);
}
