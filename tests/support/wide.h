// Tests write text down in UTF-8; here it becomes what the calls take and give.
#pragma once

#include <string>
#include <string_view>

#include "platform/winapi.h"
#include "storage/text.h"

namespace torvane::testing {

Text Utf16(std::string_view utf8);
std::string Utf8(TextView text);

/// Text for a call: `RegDeleteValueW(key, W("name"))`. A null pointer stays one.
class W {
 public:
  explicit W(const char* utf8) : isNull_(utf8 == nullptr) {
    if (utf8 != nullptr) text_ = Utf16(utf8);
  }
  explicit W(const std::string& utf8) : text_(Utf16(utf8)) {}

  operator const WCHAR*() const { return isNull_ ? nullptr : Wide(text_); }

 private:
  Text text_;
  bool isNull_ = false;
};

/// A value's data as the registry holds it, of data whose text is in UTF-8, and the way back.
std::string StoredData(unsigned type, std::string_view data);
std::string ShownData(unsigned type, std::string_view stored);

}  // namespace torvane::testing
