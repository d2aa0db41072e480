#include "platform/posix/disk/file_descriptor.h"

#include <unistd.h>

#include <utility>

namespace torvane::posix {

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  if (this != &other) {
    reset();
    descriptor_ = std::exchange(other.descriptor_, -1);
  }
  return *this;
}

void FileDescriptor::reset() {
  // What close reports no longer matters: what must be on the disk was synced before.
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = -1;
}

}  // namespace torvane::posix
