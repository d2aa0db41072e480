#include "finding/text_file.h"

#include <optional>

namespace torvane {
namespace {

using namespace std::string_view_literals;

Text FromUtf16(std::string_view bytes, std::size_t low) {
  Text text;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const auto byte = [&](std::size_t which) {
      return static_cast<unsigned>(static_cast<unsigned char>(bytes[at + which]));
    };
    text += static_cast<char16_t>(byte(low) | byte(1 - low) << 8U);
  }
  return text;
}

void Append(Text& text, char32_t character) {
  if (character < 0x10000) {
    text += static_cast<char16_t>(character);
  } else {
    text += static_cast<char16_t>(0xD7C0 + (character >> 10U));
    text += static_cast<char16_t>(0xDC00 + (character & 0x3FFU));
  }
}

// The character that begins at the front of `bytes`, taken off; nothing where none does.
std::optional<char32_t> NextUtf8(std::string_view& bytes) {
  constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(bytes.front());
  const std::size_t more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
  if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4 || bytes.size() <= more) return std::nullopt;
  char32_t character = more == 0 ? lead : lead & (0x3FU >> more);
  for (std::size_t at = 1; at <= more; ++at) {
    const auto byte = static_cast<unsigned char>(bytes[at]);
    if ((byte & 0xC0U) != 0x80) return std::nullopt;
    character = character << 6U | (byte & 0x3FU);
  }
  const bool isSurrogate = character >= 0xD800 && character < 0xE000;
  if (character < kLeast[more] || character > 0x10FFFF || isSurrogate) return std::nullopt;
  bytes.remove_prefix(more + 1);
  return character;
}

std::optional<Text> FromUtf8(std::string_view bytes) {
  Text text;
  while (!bytes.empty()) {
    const auto character = NextUtf8(bytes);
    if (!character) return std::nullopt;
    Append(text, *character);
  }
  return text;
}

}  // namespace

Text TextOfFile(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE"sv)) return FromUtf16(bytes.substr(2), 0);
  if (bytes.starts_with("\xFE\xFF"sv)) return FromUtf16(bytes.substr(2), 1);
  if (bytes.starts_with("\xEF\xBB\xBF"sv)) bytes.remove_prefix(3);
  const auto text = FromUtf8(bytes);
  return text ? *text : FromAnsi(bytes);
}

}  // namespace torvane
