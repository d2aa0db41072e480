#include "windows/product_text.h"

#include "platform/extras.h"

namespace torvane {

Text VersionText() {
  const VersionRecord record = ReadVersionRecord();
  return Decimal(record.major) + u'.' + Decimal(record.minor) + u'.' + Decimal(record.revision);
}

}  // namespace torvane
