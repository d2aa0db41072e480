// Whether a row of the user's can be right.
#pragma once

#include "readers/MruEntry.h"

namespace torvane {

/// Why the fields behind a row's '=' can't be right; empty for those that can, which `entry` has
/// then.
Text ReadCheckedRow(TextView fields, MruEntry& entry);

/// Whether a text has a character that no name in a list file may have.
bool HasControlCharacter(TextView text);

}  // namespace torvane
