#include <QCursor>

#include "support/pointer.h"

namespace torvane::testing {

void PlacePointer(int x, int y) {
  QCursor::setPos(x, y);
}

}  // namespace torvane::testing
