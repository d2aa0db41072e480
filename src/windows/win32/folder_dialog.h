// The question for a folder.
#pragma once

#include "platform/winapi.h"
#include "storage/text.h"

namespace torvane {

/// Asks for a folder of the file system, modal to `owner`: its path, empty on cancel and for a
/// folder without a path.
Text ChooseFolder(HWND owner, const Text& title);

}  // namespace torvane
