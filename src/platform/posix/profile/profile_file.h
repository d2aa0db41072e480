// A profile file on the host as one of those that are shared with other programs.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/disk/shared_file.h"
#include "platform/posix/profile/profile_text.h"

namespace torvane::posix {

/// Waiting changes are kept as calls, so that they can be made on whatever stands in the file when
/// the time comes. All throw std::system_error where the file can't be read, and change() where it
/// can't be replaced.
class ProfileFile final : public SharedFile {
 public:
  explicit ProfileFile(std::filesystem::path path);

  /// The file as it will be once the waiting changes are written. Valid until the next call.
  const ProfileText& text();

  /// Sets a key's value, or removes the key where `value` is nothing, or the section where `key`
  /// is.
  void change(std::u16string_view section, std::optional<std::u16string> key,
              std::optional<std::u16string> value);
  /// Makes these the section's entries, as ProfileText::setEntries does.
  void changeEntries(std::u16string_view section, std::vector<std::u16string> entries);

 private:
  struct Change {
    std::u16string section;
    std::optional<std::u16string> key;
    std::optional<std::u16string> value;
    std::optional<std::vector<std::u16string>> entries;
  };
  /// The bytes of a reading and what they say, changed since or not.
  struct State {
    std::string bytes;
    std::unique_ptr<ProfileText> text;
  };

  void load(FileContent content) override;
  void loadFresh(FileContent content) override;
  bool isReadFrom(std::string_view bytes) const override { return current().bytes == bytes; }
  bool render() override;
  void write(FileReplacement& out) const override { out.append(rendered_); }
  void adopt() override;
  void abandon() override;

  State& current() { return fresh_ ? *fresh_ : state_; }
  const State& current() const { return fresh_ ? *fresh_ : state_; }
  void apply(Change change);
  static void Apply(const Change& change, ProfileText& text);

  State state_;
  std::optional<State> fresh_;
  std::string rendered_;
  std::vector<Change> pending_;
};

/// The cached file of a host path, kept until ForgetWorld().
ProfileFile& OpenProfile(const std::filesystem::path& path);

}  // namespace torvane::posix
