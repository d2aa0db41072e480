// The product's name and version as its windows show them.
#pragma once

#include "storage/text.h"

namespace torvane {

/// "1.3.122": major, minor and revision of the version record.
Text VersionText();

}  // namespace torvane
