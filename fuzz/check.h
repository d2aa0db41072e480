// What a fuzz target says when something must hold and doesn't.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace torvane::fuzz {

/// Ends the program, which is how the fuzzer learns of a finding.
inline void Check(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "doesn't hold: %s\n", what);
  std::abort();
}

}  // namespace torvane::fuzz
