#include "storage/registry_data.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "platform/winapi.h"

namespace torvane {
namespace {

Text ClosedText(const Bytes& bytes) {
  Text text = TextOfBytes(bytes);
  if (text.ends_with(u'\0')) text.pop_back();
  return text;
}

// What stands behind a NUL in the text is not for the environment.
Text Expanded(const Text& text) {
  constexpr std::size_t kUsualGrowth = 4;
  Text expanded(text.size() * kUsualGrowth + MAX_PATH, u'\0');
  while (true) {
    const auto room = static_cast<DWORD>(expanded.size());
    const DWORD size = ExpandEnvironmentStringsW(Wide(text), WideBuffer(expanded), room);
    if (size == 0) return text;
    if (size <= room) return StripAtNull(expanded);
    expanded.resize(size);
  }
}

// Missing bytes are 0, and so is a number that doesn't fit.
std::array<std::byte, 4> NumberBytes(const Bytes& bytes) {
  std::array<std::byte, 4> number{};
  if (bytes.size() <= number.size()) std::copy(bytes.begin(), bytes.end(), number.begin());
  return number;
}

std::int32_t LowByteFirst(const std::array<std::byte, 4>& bytes) {
  return std::bit_cast<std::int32_t>(bytes);
}

std::int32_t HighByteFirst(std::array<std::byte, 4> bytes) {
  std::reverse(bytes.begin(), bytes.end());
  return LowByteFirst(bytes);
}

}  // namespace

Bytes BytesOfText(TextView text) {
  Bytes bytes(text.size() * sizeof(char16_t));
  if (!text.empty()) std::memcpy(bytes.data(), text.data(), bytes.size());
  return bytes;
}

Text TextOfBytes(const Bytes& bytes) {
  Text text(bytes.size() / sizeof(char16_t), u'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
  return text;
}

Bytes BytesOfNumber(std::int32_t number) {
  const auto bytes = std::bit_cast<std::array<std::byte, sizeof number>>(number);
  return {bytes.begin(), bytes.end()};
}

Variant ReadData(std::int32_t type, const Bytes& bytes) {
  switch (static_cast<DWORD>(type)) {
    case REG_SZ:
    case REG_MULTI_SZ:
      return bytes.empty() ? Variant() : Variant(ClosedText(bytes));
    case REG_EXPAND_SZ:
      return bytes.empty() ? Variant() : Variant(Expanded(ClosedText(bytes)));
    case REG_DWORD:
      return LowByteFirst(NumberBytes(bytes));
    case REG_DWORD_BIG_ENDIAN:
      return HighByteFirst(NumberBytes(bytes));
    default: {
      Bytes spare = bytes;
      spare.push_back(std::byte{0});
      return spare;
    }
  }
}

std::int32_t TypeForText(TextView text) {
  const auto first = text.find(u'%');
  const bool refers = first != TextView::npos && text.find(u'%', first + 2) != TextView::npos;
  return refers ? static_cast<std::int32_t>(REG_EXPAND_SZ) : static_cast<std::int32_t>(REG_SZ);
}

}  // namespace torvane
