#include "platform/posix/disk/refusal.h"

namespace torvane::posix {

std::string ReasonOf(const std::system_error& error) {
  const auto* refusal = dynamic_cast<const Refusal*>(&error);
  return refusal != nullptr ? refusal->reason() : error.code().message();
}

WriteFailureKind KindOf(const std::system_error& error) {
  if (const auto* refusal = dynamic_cast<const WriteRefused*>(&error)) return refusal->kind();
  return dynamic_cast<const NotSynced*>(&error) != nullptr ? WriteFailureKind::NewStands
                                                           : WriteFailureKind::OldStands;
}

}  // namespace torvane::posix
