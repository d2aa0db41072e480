// UTF-8 for arguments and output.
#pragma once

#include <string>
#include <string_view>

#include "storage/text.h"

namespace torvane {

/// UTF-8 of a text; half a surrogate pair becomes U+FFFD.
std::string ToUtf8(TextView text);
/// The text of an argument.
Text FromUtf8(std::string_view bytes);

}  // namespace torvane
