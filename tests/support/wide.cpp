#include "support/wide.h"

#include <cstring>
#include <filesystem>

namespace torvane::testing {
namespace {

bool IsTextType(unsigned type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

}  // namespace

Text Utf16(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).u16string();
}

std::string Utf8(TextView text) {
  const std::u8string bytes = std::filesystem::path(text).u8string();
  return {bytes.begin(), bytes.end()};
}

std::string StoredData(unsigned type, std::string_view data) {
  if (!IsTextType(type)) return std::string(data);
  const Text text = Utf16(data);
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

std::string ShownData(unsigned type, std::string_view stored) {
  if (!IsTextType(type)) return std::string(stored);
  Text text(stored.size() / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), stored.data(), text.size() * sizeof(char16_t));
  return Utf8(text);
}

}  // namespace torvane::testing
