// The prefix's ANSI code page, and text in it.
#pragma once

#include <string>
#include <string_view>

#include "platform/posix/text/code_page.h"

namespace torvane::posix {

/// The page that the prefix names (value ACP of Nls\CodePage in system.reg), else 1252. The hive is
/// read for it when it is first asked for.
const CodePage& AnsiPage();

/// 16-bit text of bytes in that page, and back; see CodePage.
inline std::u16string FromCodePage(std::string_view bytes) {
  return AnsiPage().decode(bytes);
}
inline std::string ToCodePage(std::u16string_view text) {
  return AnsiPage().encode(text);
}

}  // namespace torvane::posix
