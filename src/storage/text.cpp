#include "storage/text.h"

#include "platform/winapi.h"

// The A calls take bytes, the program holds 16-bit text. WCHAR is 16 bits on both platforms but
// need not be char16_t, hence the casts.

namespace torvane {
namespace {

const WCHAR* Wide(const char16_t* text) {
  return reinterpret_cast<const WCHAR*>(text);
}
WCHAR* Wide(char16_t* text) {
  return reinterpret_cast<WCHAR*>(text);
}

}  // namespace

std::string ToAnsi(TextView text) {
  if (text.empty()) return {};
  const int units = static_cast<int>(text.size());
  // No code page takes more than four bytes for a 16-bit unit.
  std::string bytes(text.size() * 4, '\0');
  const int size = WideCharToMultiByte(CP_ACP, 0, Wide(text.data()), units, bytes.data(),
                                       static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

Text FromAnsi(std::string_view bytes) {
  if (bytes.empty()) return {};
  // No code page gives more units than it has bytes.
  Text text(bytes.size(), u'\0');
  const int size = MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()),
                                       Wide(text.data()), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(size));
  return text;
}

Text LowerCase(Text text) {
  if (!text.empty()) CharLowerBuffW(Wide(text.data()), static_cast<DWORD>(text.size()));
  return text;
}

Text Decimal(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

Text StripAtNull(const Text& text) {
  return text.substr(0, text.find(u'\0'));
}

}  // namespace torvane
