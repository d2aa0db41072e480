#include "platform/posix/disk/forget.h"

#include <vector>

namespace torvane::posix {
namespace {

std::vector<void (*)()>& Caches() {
  static std::vector<void (*)()> caches;
  return caches;
}

}  // namespace

void ForgetWorld() {
  for (const auto forget : Caches()) forget();
}

AtForget::AtForget(void (*forget)()) {
  Caches().push_back(forget);
}

}  // namespace torvane::posix
