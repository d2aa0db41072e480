// The small window that asks for a prefix where there are several.
#pragma once

#include <QWidget>
#include <filesystem>
#include <optional>
#include <vector>

#include "platform/posix/prefix/found_prefixes.h"

namespace torvane {

/// Shows the prefixes, the one at `selected` chosen if it is among them, and gives the user's
/// choice, which may be a folder that isn't among them. Nothing where the window is closed. `owner`
/// is the window that it stands over, null for none.
std::optional<posix::FoundPrefix> AskForPrefix(QWidget* owner,
                                               const std::vector<posix::FoundPrefix>& prefixes,
                                               const std::filesystem::path& selected);

}  // namespace torvane
