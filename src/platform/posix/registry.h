// Reading the prefix's registry from within the layer, without the A calls and their code page.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace torvane::posix {

/// A text value (REG_SZ or REG_EXPAND_SZ) below HKEY_LOCAL_MACHINE, without its closing NUL;
/// nothing where it isn't there or is no text.
std::optional<std::u16string> MachineText(std::u16string_view keyPath,
                                          std::u16string_view valueName);

}  // namespace torvane::posix
