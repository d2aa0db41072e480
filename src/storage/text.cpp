#include "storage/text.h"

#include <cstdint>
#include <cstring>

#include "platform/winapi.h"

namespace torvane {
namespace {

int CompareNames(TextView left, TextView right) {
  // The call wants an address, which an empty view need not have.
  const auto start = [](TextView text) { return Wide(text.empty() ? u"" : text.data()); };
  return CompareStringOrdinal(start(left), static_cast<int>(left.size()), start(right),
                              static_cast<int>(right.size()), TRUE);
}

// Four units at a time.
constexpr std::size_t kBlock = 4;
constexpr std::uint64_t kEach = 0x0001'0001'0001'0001;
constexpr std::uint64_t kSigns = 0x8000 * kEach;

std::uint64_t BlockAt(const char16_t* text) {
  std::uint64_t units = 0;
  std::memcpy(&units, text, sizeof units);
  return units;
}

constexpr bool IsAscii(std::uint64_t units) {
  return (units & (0xFF80 * kEach)) == 0;
}

// Of units that are all of ASCII, which need no table.
constexpr std::uint64_t LowerAscii(std::uint64_t units) {
  const std::uint64_t fromA = units + (0x8000 - u'A') * kEach;
  const std::uint64_t behindZ = units + (0x8000 - u'Z' - 1) * kEach;
  return units | ((fromA & ~behindZ & kSigns) >> 10U);
}

// Gives false, the text being lower case in part, where it has other units.
bool LowerWhereAscii(Text& text) {
  std::size_t at = 0;
  for (; at + kBlock <= text.size(); at += kBlock) {
    const std::uint64_t units = BlockAt(&text[at]);
    if (!IsAscii(units)) return false;
    const std::uint64_t lower = LowerAscii(units);
    std::memcpy(&text[at], &lower, sizeof lower);
  }
  for (; at < text.size(); ++at) {
    if (!IsAscii(text[at])) return false;
    text[at] = static_cast<char16_t>(LowerAscii(text[at]));
  }
  return true;
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
                                       WideBuffer(text), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(size));
  return text;
}

Text LowerCase(Text text) {
  if (text.empty() || LowerWhereAscii(text)) return text;
  Text lower = text;
  CharLowerBuffW(WideBuffer(lower), static_cast<DWORD>(lower.size()));
  if (SameName(lower, text)) return lower;
  // Some systems' table leads from the Kelvin sign to k, which is another file's name.
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (SameName({&lower[i], 1}, {&text[i], 1})) text[i] = lower[i];
  }
  return text;
}

bool SameText(TextView left, TextView right) {
  return left.size() == right.size() &&
         (left.empty() ||
          std::memcmp(left.data(), right.data(), left.size() * sizeof(char16_t)) == 0);
}

bool SameName(TextView left, TextView right) {
  return left.size() == right.size() && CompareNames(left, right) == CSTR_EQUAL;
}

bool NameOrder::operator()(TextView left, TextView right) const {
  return CompareNames(left, right) == CSTR_LESS_THAN;
}

Text Decimal(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

Text StripAtNull(const Text& text) {
  return text.substr(0, text.find(u'\0'));
}

}  // namespace torvane
