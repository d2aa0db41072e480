#include "storage/text.h"

#include "platform/winapi.h"

namespace torvane {
namespace {

int CompareNames(TextView left, TextView right) {
  // The call wants an address, which an empty view need not have.
  const auto start = [](TextView text) { return Wide(text.empty() ? u"" : text.data()); };
  return CompareStringOrdinal(start(left), static_cast<int>(left.size()), start(right),
                              static_cast<int>(right.size()), TRUE);
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
  // Nearly all that is asked for is plain, and has to ask no table.
  char16_t all = 0;
  for (const char16_t unit : text) all |= unit;
  if (all < 0x80) {
    for (char16_t& unit : text) {
      const bool isCapital = unit >= u'A' && unit <= u'Z';
      unit = static_cast<char16_t>(isCapital ? unit + (u'a' - u'A') : unit);
    }
    return text;
  }
  Text lower = text;
  CharLowerBuffW(WideBuffer(lower), static_cast<DWORD>(lower.size()));
  if (SameName(lower, text)) return lower;
  // Some systems' table leads from the Kelvin sign to k, which is another file's name.
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (SameName({&lower[i], 1}, {&text[i], 1})) text[i] = lower[i];
  }
  return text;
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
