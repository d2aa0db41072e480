// The environment variables as a Windows program in the prefix would have them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace torvane::posix {

/// A variable's value, its name without case; nothing where there is none.
std::optional<std::u16string> EnvironmentVariable(std::u16string_view name);

/// Replaces %NAME% by values; unknown names and single signs stay as they are.
std::u16string ExpandVariables(std::u16string_view text);

}  // namespace torvane::posix
