#include "platform/winapi.h"
#include "support/pointer.h"

namespace torvane::testing {

void PlacePointer(int x, int y) {
  SetCursorPos(x, y);
}

}  // namespace torvane::testing
