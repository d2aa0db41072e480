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

void MarkChanged(ChangedFile& file) {
  auto& files = Changed();
  if (std::find(files.begin(), files.end(), &file) == files.end()) files.push_back(&file);
}

void UnmarkChanged(ChangedFile& file) {
  std::erase(Changed(), &file);
}

std::vector<WriteFailure> WriteBackChanges() {
  std::vector<WriteFailure> failures;
  const std::vector<ChangedFile*> files = Changed();
  for (ChangedFile* file : files) {
    try {
      file->writeBack();
      UnmarkChanged(*file);
    } catch (const PrefixInUse& error) {
      failures.push_back({file->hostPath(), error.reason(), true});
    } catch (const WriteRefused& error) {
      failures.push_back({file->hostPath(), error.reason(), false});
    } catch (const std::system_error& error) {
      failures.push_back({file->hostPath(), error.code().message(), false});
    }
  }
  return failures;
}

}  // namespace torvane::posix
