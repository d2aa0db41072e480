// The platform's own toolkit, started once for all tests of the process.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "windows/controls/toolkit.h"

namespace torvane::testing {

inline std::unique_ptr<Toolkit>& PlatformToolkit() {
  static std::unique_ptr<Toolkit> toolkit;
  return toolkit;
}

/// Lets the toolkit go before the program's statics go.
class ToolkitEnvironment : public ::testing::Environment {
 public:
  void TearDown() override { PlatformToolkit().reset(); }
};
inline const auto* const kToolkitEnvironment =
    ::testing::AddGlobalTestEnvironment(std::make_unique<ToolkitEnvironment>().release());

/// Needs a world to start in.
inline Toolkit& StartedToolkit() {
  if (PlatformToolkit()) return *PlatformToolkit();
  static int argc = 1;
  static char name[] = "torvane";
  static char* argv[] = {name, nullptr};
  PlatformToolkit() = MakePlatformToolkit(argc, argv);
  EXPECT_TRUE(PlatformToolkit()->Start());
  return *PlatformToolkit();
}

}  // namespace torvane::testing
