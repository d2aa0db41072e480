// What the rest of the layer and the window ask of the prefix's registry beside the calls.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::posix {

/// A text value (REG_SZ or REG_EXPAND_SZ) below HKEY_LOCAL_MACHINE, without its closing NUL;
/// nothing where it isn't there or is no text.
std::optional<std::u16string> MachineText(std::u16string_view keyPath,
                                          std::u16string_view valueName);

enum class Hives { All, Written };
/// What is wrong with those hives that can only be read for it ("user.reg", line, what), a text a
/// hive, in UTF-8; empty where they are sound. Loads them.
std::vector<std::string> HiveProblems(Hives which = Hives::All);

/// Why the last refused change to a hive was refused and what the user can do, as a paragraph in
/// UTF-8; empty where none was. Asking clears it.
std::string TakeRefusalNote();

}  // namespace torvane::posix
