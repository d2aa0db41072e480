#include "cli/utf8.h"

#include "finding/text_file.h"

namespace torvane {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsBetween(char32_t unit, char32_t first, char32_t last) {
  return unit >= first && unit <= last;
}

void Append(std::string& bytes, char32_t character) {
  const auto add = [&](char32_t byte) { bytes += static_cast<char>(byte); };
  if (character < 0x80) return add(character);
  if (character < 0x800) {
    add(0xC0U | character >> 6U);
  } else {
    if (character < 0x10000) {
      add(0xE0U | character >> 12U);
    } else {
      add(0xF0U | character >> 18U);
      add(0x80U | (character >> 12U & 0x3FU));
    }
    add(0x80U | (character >> 6U & 0x3FU));
  }
  add(0x80U | (character & 0x3FU));
}

}  // namespace

std::string ToUtf8(TextView text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); ++at) {
    char32_t character = text[at];
    if (IsBetween(character, 0xD800, 0xDFFF)) {
      const char32_t next = at + 1 < text.size() ? text[at + 1] : 0;
      const bool isPair = character < 0xDC00 && IsBetween(next, 0xDC00, 0xDFFF);
      character = isPair ? 0x10000 + ((character - 0xD800) << 10U) + (next - 0xDC00) : kReplacement;
      if (isPair) ++at;
    }
    Append(bytes, character);
  }
  return bytes;
}

Text FromUtf8(std::string_view bytes) {
  return TextOfFile(bytes);
}

}  // namespace torvane
