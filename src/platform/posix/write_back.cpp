// The list of changed files, in the order in which they were first changed.
#include "platform/posix/write_back.h"

#include <algorithm>
#include <system_error>

#include "platform/posix/prefix.h"
#include "platform/posix/wine_server.h"

namespace torvane::posix {
namespace {

std::vector<ChangedFile*>& Changed() {
  static std::vector<ChangedFile*> files;
  return files;
}

const AtForget kForgetChanges([] { Changed().clear(); });

}  // namespace

std::string ReasonOf(const std::system_error& error) {
  const auto* refusal = dynamic_cast<const WriteRefused*>(&error);
  return refusal != nullptr ? refusal->reason() : error.code().message();
}

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
      failures.push_back({.path = file->hostPath(),
                          .reason = ReasonOf(error),
                          .inUseByWine = dynamic_cast<const PrefixInUse*>(&error) != nullptr,
                          .isReplaced = dynamic_cast<const NotSynced*>(&error) != nullptr});
    }
  }
  return failures;
}

}  // namespace torvane::posix
