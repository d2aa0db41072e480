#include "storage/variant.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "storage/numeric_text.h"

namespace torvane {
namespace {

template <class... Cases>
struct Overload : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overload(Cases...) -> Overload<Cases...>;

Text TextOfBytes(const Bytes& bytes) {
  std::string text(bytes.size(), '\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(),
                 [](std::byte byte) { return static_cast<char>(byte); });
  return FromAnsi(text.substr(0, text.find('\0')));
}

}  // namespace

Text AsText(const Variant& value) {
  return std::visit(Overload{
                        [](std::monostate) { return Text(); },
                        [](const Text& text) { return text; },
                        [](std::int16_t number) { return Decimal(number); },
                        [](std::int32_t number) { return Decimal(number); },
                        [](const Bytes& bytes) { return TextOfBytes(bytes); },
                    },
                    value);
}

std::int32_t AsInteger(const Variant& value) {
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
  if (const auto* number = std::get_if<std::int16_t>(&value)) return *number;
  const std::string digits = ToAnsi(AsText(value));
  return static_cast<std::int32_t>(std::strtol(digits.c_str(), nullptr, 10));
}

std::int32_t Length(const Variant& value) {
  if (const auto* text = std::get_if<Text>(&value)) return static_cast<std::int32_t>(text->size());
  return static_cast<std::int32_t>(AsText(value).size());
}

bool IsNumeric(const Variant& value) {
  return std::visit(Overload{
                        [](std::monostate) { return true; },
                        [](const Text& text) { return ReadsAsNumber(text); },
                        [](const Bytes&) { return false; },
                        [](auto) { return true; },
                    },
                    value);
}

}  // namespace torvane
