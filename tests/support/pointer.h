// The real mouse pointer, for tests in which the program asks where it is.
#pragma once

namespace torvane::testing {

/// Puts the pointer to a place of the screen, in pixels.
void PlacePointer(int x, int y);

}  // namespace torvane::testing
