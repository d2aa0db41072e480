// Waiting changes are kept as calls, not as bytes: whatever stands in the file when the time comes,
// they can be made there.
#include "platform/posix/profile_file.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <system_error>
#include <utility>

#include "platform/posix/file_clock.h"
#include "platform/posix/prefix.h"

namespace torvane::posix {
namespace {

using Files = std::map<std::filesystem::path, std::unique_ptr<ProfileFile>>;

Files& KnownFiles() {
  static Files files;
  return files;
}

const AtForget kForgetProfiles([] { KnownFiles().clear(); });

/// Removes what a writer left behind that was killed in the middle.
void CleanUp(const std::filesystem::path& path) {
  try {
    RemoveStaleReplacement(ResolveTarget(path));
  } catch (const std::system_error&) {
    // A path that no file can be written to has nothing left behind either.
  }
}

}  // namespace

ProfileFile::ProfileFile(std::filesystem::path path) : path_(std::move(path)) {
  CleanUp(path_);
}

const ProfileText& ProfileFile::text() {
  refresh();
  return *text_;
}

void ProfileFile::refresh() {
  const std::int64_t now = FileClock();
  if (text_ && trusted_ && StampOf(path_) == stamp_) return;
  const FileContent content = ReadWholeFile(path_);
  stamp_ = content.stamp;
  trusted_ = IsSettled(stamp_, now);
  // A file just written is read again until its stamp counts; mostly it has what it had.
  if (text_ && content.view() == original_) return;
  original_ = content.view();
  text_ = std::make_unique<ProfileText>(original_);
  for (const Change& change : pending_) apply(change);
}

void ProfileFile::apply(const Change& change) {
  if (!change.key) {
    text_->removeSection(change.section);
  } else if (!change.value) {
    text_->removeKey(change.section, *change.key);
  } else {
    text_->set(change.section, *change.key, *change.value);
  }
}

void ProfileFile::change(std::u16string_view section, std::optional<std::u16string> key,
                         std::optional<std::u16string> value) {
  refresh();
  Change change{std::u16string(section), std::move(key), std::move(value)};
  const bool removes = !change.key || !change.value;
  if (removes && !text_->contains(change.section, change.key)) return;
  // Once a change waits, the rest of them share its fate.
  if (pending_.empty()) CheckReplaceable(ResolveTarget(path_));
  apply(change);
  pending_.push_back(std::move(change));
  MarkChanged(*this);
}

void ProfileFile::writeBack() {
  constexpr int kAttempts = 8;
  const std::filesystem::path target = ResolveTarget(path_);
  const FolderLock lock(target.parent_path());
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (replace(target)) {
      pending_.clear();
      return;
    }
  }
  throw std::system_error(EBUSY, std::generic_category(), target.string());
}

/// Gives false where a program that takes no lock has changed the file meanwhile.
bool ProfileFile::replace(const std::filesystem::path& target) {
  refresh();
  std::string bytes = text_->bytes();
  if (bytes == original_) return true;
  FileReplacement replacement(target);
  replacement.append(bytes);
  replacement.sync();
  if (StampOf(path_) != stamp_) return false;
  stamp_ = replacement.commit();
  trusted_ = false;
  original_ = std::move(bytes);
  return true;
}

// Users know the file by its place, not by the way through the prefix's links.
std::string ProfileFile::hostPath() const {
  std::error_code error;
  const std::filesystem::path place = std::filesystem::weakly_canonical(path_, error);
  return error ? path_.string() : place.string();
}

ProfileFile& OpenProfile(const std::filesystem::path& path) {
  auto& file = KnownFiles()[path];
  if (!file) file = std::make_unique<ProfileFile>(path);
  return *file;
}

}  // namespace torvane::posix
