#include "platform/posix/profile/profile_encoding.h"

#include "platform/posix/registry/ansi_page.h"

namespace torvane::posix {

ProfileEncoding::ProfileEncoding(std::string_view file) {
  if (file.starts_with("\xEF\xBB\xBF")) form_ = Form::Utf8;
  if (file.starts_with("\xFF\xFE")) form_ = Form::Utf16Little;
  if (file.starts_with("\xFE\xFF")) form_ = Form::Utf16Big;
}

std::size_t ProfileEncoding::markSize() const {
  if (form_ == Form::CodePage) return 0;
  return form_ == Form::Utf8 ? 3 : 2;
}

std::u16string ProfileEncoding::decode(std::string_view bytes) const {
  if (form_ == Form::CodePage) return FromCodePage(bytes);
  if (form_ == Form::Utf8) return FromUtf8(bytes);
  const std::size_t low = form_ == Form::Utf16Little ? 0 : 1;
  std::u16string text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i + low]) |
                                    (static_cast<unsigned char>(bytes[2 * i + 1 - low]) << 8U));
  }
  return text;
}

std::string ProfileEncoding::encode(std::u16string_view text) const {
  if (form_ == Form::CodePage) return ToCodePage(text);
  if (form_ == Form::Utf8) return ToUtf8(text);
  const std::size_t low = form_ == Form::Utf16Little ? 0 : 1;
  std::string bytes(text.size() * 2, '\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    bytes[2 * i + low] = static_cast<char>(text[i] & 0xFFU);
    bytes[2 * i + 1 - low] = static_cast<char>(text[i] >> 8U);
  }
  return bytes;
}

}  // namespace torvane::posix
