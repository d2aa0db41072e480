#include "platform/posix/profile/profile_file.h"

#include <map>
#include <utility>

#include "platform/posix/disk/forget.h"
#include "platform/sizes.h"

namespace torvane::posix {
namespace {

using Files = std::map<std::filesystem::path, std::unique_ptr<ProfileFile>>;

Files& KnownFiles() {
  static Files files;
  return files;
}

const AtForget kForgetProfiles([] { KnownFiles().clear(); });

}  // namespace

ProfileFile::ProfileFile(std::filesystem::path path)
    : SharedFile(std::move(path), kMostProfileBytes, Vanished::Refused) {}

const ProfileText& ProfileFile::text() {
  refresh();
  return *state_.text;
}

void ProfileFile::load(FileContent content) {
  state_.bytes = content.view();
  state_.text = std::make_unique<ProfileText>(state_.bytes);
}

void ProfileFile::loadFresh(FileContent content) {
  State& fresh = fresh_.emplace();
  fresh.bytes = content.view();
  fresh.text = std::make_unique<ProfileText>(fresh.bytes);
  for (const Change& change : pending_) Apply(change, *fresh.text);
}

void ProfileFile::Apply(const Change& change, ProfileText& text) {
  if (change.entries) {
    text.setEntries(change.section, *change.entries);
  } else if (!change.key) {
    text.removeSection(change.section);
  } else if (!change.value) {
    text.removeKey(change.section, *change.key);
  } else {
    text.set(change.section, *change.key, *change.value);
  }
}

void ProfileFile::change(std::u16string_view section, std::optional<std::u16string> key,
                         std::optional<std::u16string> value) {
  refresh();
  Change change{std::u16string(section), std::move(key), std::move(value), std::nullopt};
  const bool removes = !change.key || !change.value;
  if (removes && !state_.text->contains(change.section, change.key)) return;
  apply(std::move(change));
}

void ProfileFile::changeEntries(std::u16string_view section, std::vector<std::u16string> entries) {
  refresh();
  apply({std::u16string(section), std::nullopt, std::nullopt, std::move(entries)});
}

void ProfileFile::apply(Change change) {
  checkChange();
  Apply(change, *state_.text);
  pending_.push_back(std::move(change));
  noteChange();
}

bool ProfileFile::render() {
  rendered_ = current().text->bytes(path().string());
  return rendered_ != current().bytes;
}

void ProfileFile::adopt() {
  if (fresh_) state_ = std::move(*fresh_);
  state_.text->keepEarlier(path().string());
  state_.bytes = std::exchange(rendered_, {});
  state_.text = std::make_unique<ProfileText>(state_.bytes);
  fresh_.reset();
  pending_.clear();
}

void ProfileFile::abandon() {
  fresh_.reset();
  rendered_.clear();
}

ProfileFile& OpenProfile(const std::filesystem::path& path) {
  auto& file = KnownFiles()[path];
  if (!file) file = std::make_unique<ProfileFile>(path);
  return *file;
}

}  // namespace torvane::posix
