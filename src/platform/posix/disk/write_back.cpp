// The list of changed files, in the order in which they were first changed.
#include "platform/posix/disk/write_back.h"

#include <algorithm>
#include <system_error>

#include "platform/posix/disk/forget.h"

namespace torvane::posix {
namespace {

std::vector<ChangedFile*>& Changed() {
  static std::vector<ChangedFile*> files;
  return files;
}

const AtForget kForgetChanges([] { Changed().clear(); });

}  // namespace

void MarkChanged(ChangedFile& file) {
  auto& files = Changed();
  if (std::find(files.begin(), files.end(), &file) == files.end()) files.push_back(&file);
}

void UnmarkChanged(ChangedFile& file) {
  std::erase(Changed(), &file);
}

bool ChangesWait() {
  return !Changed().empty();
}

std::vector<WriteFailure> WriteBackChanges() {
  std::vector<WriteFailure> failures;
  const std::vector<ChangedFile*> files = Changed();
  for (ChangedFile* file : files) {
    try {
      file->writeBack();
      UnmarkChanged(*file);
    } catch (const std::system_error& error) {
      failures.push_back(
          {.path = file->hostPath(), .reason = ReasonOf(error), .kind = KindOf(error)});
      if (KindOf(error) == WriteFailureKind::MayNotLast) UnmarkChanged(*file);
    }
  }
  return failures;
}

}  // namespace torvane::posix
