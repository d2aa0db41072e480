#include "cli/reg_file.h"

#include <algorithm>

#include "platform/winapi.h"
#include "storage/clsRegistry.h"

namespace torvane {
namespace {

constexpr TextView kLineEnd = u"\r\n";

Text Hexadecimal(std::uint32_t number, std::size_t digits) {
  Text text(digits, u'0');
  for (std::size_t at = digits; at > 0; --at, number >>= 4U) {
    text[at - 1] = u"0123456789abcdef"[number & 15U];
  }
  return text;
}

Text Quoted(TextView text) {
  Text quoted = u"\"";
  for (const char16_t unit : text) {
    if (unit == u'"' || unit == u'\\') quoted += u'\\';
    quoted += unit;
  }
  return quoted + u'"';
}

// The text of a value that stands between quotes and comes back the same; nothing for other data.
std::optional<Text> PlainText(const StoredValue& value) {
  if (value.type != REG_SZ || value.bytes.size() % 2 != 0) return std::nullopt;
  Text text = TextOfBytes(value.bytes);
  if (BytesOfText(text).size() != value.bytes.size()) return std::nullopt;
  if (text.empty() || text.back() != u'\0') return std::nullopt;
  text.pop_back();
  const bool isPlain = std::ranges::all_of(text, [](char16_t unit) { return unit >= u' '; });
  return isPlain ? std::optional(text) : std::nullopt;
}

// Bytes behind what stands in the line, which is broken as the registry editor does.
void AppendBytes(Text& line, const Bytes& bytes) {
  constexpr std::size_t kFullLine = 76;
  std::size_t column = line.size();
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    line += Hexadecimal(std::to_integer<std::uint32_t>(bytes[at]), 2);
    if (at + 1 == bytes.size()) break;
    line += u',';
    column += 3;
    if (column <= kFullLine) continue;
    line += u"\\\r\n  ";
    column = 2;
  }
}

Text ValueLine(const StoredValue& value) {
  Text line = (value.name.empty() ? Text(u"@") : Quoted(value.name)) + u'=';
  if (const auto text = PlainText(value)) return line + Quoted(*text);
  if (value.type == REG_DWORD && value.bytes.size() == sizeof(std::uint32_t)) {
    std::uint32_t number = 0;
    for (std::size_t at = sizeof number; at > 0; --at) {
      number = number << 8U | std::to_integer<std::uint32_t>(value.bytes[at - 1]);
    }
    return line + u"dword:" + Hexadecimal(number, 8);
  }
  line += u"hex";
  const auto type = static_cast<std::uint32_t>(value.type);
  if (type != REG_BINARY) {
    std::size_t digits = 1;
    while (digits < 8 && type >> (4 * digits) != 0) ++digits;
    line += u'(' + Hexadecimal(type, digits) + u')';
  }
  line += u':';
  AppendBytes(line, value.bytes);
  return line;
}

std::string WithMark(TextView text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFFU);
    bytes += static_cast<char>(unit >> 8U);
  }
  return bytes;
}

}  // namespace

void RegFile::Add(const ListPlace& place, const StorePicture& picture) {
  constexpr TextView kSoftware = u"Software";
  Text key = place.location;
  if (SameName(TextView(key).substr(0, kSoftware.size()), kSoftware)) {
    key.replace(0, kSoftware.size(), kSoftware);
  }
  text_.append(kLineEnd).append(u"[HKEY_CURRENT_USER\\" + key + u"]").append(kLineEnd);
  for (const StoredValue& value : picture.values) text_.append(ValueLine(value)).append(kLineEnd);
}

std::string RegFile::Bytes() const {
  return WithMark(text_ + Text(kLineEnd));
}

void SectionFile::Add(const Text& identity, const ListPlace& place, const StorePicture& picture) {
  text_.append(u"; " + identity).append(kLineEnd);
  text_.append(u"[" + place.section + u"]").append(kLineEnd);
  for (const StoredValue& value : picture.values) {
    text_.append(value.name + u"=" + TextOfBytes(value.bytes)).append(kLineEnd);
  }
  text_.append(kLineEnd);
}

std::string SectionFile::Bytes() const {
  return WithMark(text_);
}

}  // namespace torvane
