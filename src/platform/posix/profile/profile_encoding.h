// How a profile file keeps its text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace torvane::posix {

/// One of the four encodings that Wine's profile calls know: by the file's mark UTF-8 or UTF-16 of
/// either byte order, without a mark the ANSI code page.
class ProfileEncoding {
 public:
  /// The encoding of a file that begins with these bytes.
  explicit ProfileEncoding(std::string_view file);

  /// Bytes of the mark at the file's front, 0 for none.
  std::size_t markSize() const;
  /// Bytes of a line end's character, and of an '=' or blank.
  std::size_t unitSize() const { return isUtf16() ? 2 : 1; }

  /// Text of bytes behind the mark. In UTF-8 what is ill-formed becomes U+FFFD, in UTF-16 half a
  /// unit at the end nothing.
  std::u16string decode(std::string_view bytes) const;
  /// Bytes of text that canHold() is true of.
  std::string encode(std::u16string_view text) const;
  /// Whether every character of the text can be written and read again.
  bool canHold(std::u16string_view text) const { return decode(encode(text)) == text; }

 private:
  enum class Form { CodePage, Utf8, Utf16Little, Utf16Big };

  bool isUtf16() const { return form_ == Form::Utf16Little || form_ == Form::Utf16Big; }

  Form form_ = Form::CodePage;
};

}  // namespace torvane::posix
