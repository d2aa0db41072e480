// The text of a file that a person wrote.
#pragma once

#include <string_view>

#include "storage/text.h"

namespace torvane {

/// The text of a file's bytes: UTF-16 or UTF-8 where its mark says so, UTF-8 where all of it is,
/// else the ANSI code page. Without the mark.
Text TextOfFile(std::string_view bytes);

}  // namespace torvane
