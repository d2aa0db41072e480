// A profile file on the host with the changes that wait to be written to it.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/atomic_file.h"
#include "platform/posix/profile_text.h"
#include "platform/posix/write_back.h"

namespace torvane::posix {

/// Reads the file anew whenever its stamp has changed and applies the waiting changes to what it
/// finds, so that nobody's changes to other lines are lost. All throw std::system_error where the
/// file can't be read, and change() where it can't be replaced.
class ProfileFile : public ChangedFile {
 public:
  explicit ProfileFile(std::filesystem::path path);

  /// The file as it will be once the waiting changes are written. Valid until the next call.
  const ProfileText& text();

  /// Sets a key's value, or removes the key where `value` is nothing, or the section where `key`
  /// is.
  void change(std::u16string_view section, std::optional<std::u16string> key,
              std::optional<std::u16string> value);

  bool hasChanges() const { return !pending_.empty(); }
  void writeBack() override;
  std::string hostPath() const override;

 private:
  struct Change {
    std::u16string section;
    std::optional<std::u16string> key;
    std::optional<std::u16string> value;
  };

  void refresh();
  void apply(const Change& change);
  bool replace(const std::filesystem::path& target);

  std::filesystem::path path_;
  FileStamp stamp_;
  bool trusted_ = false;
  std::string original_;  ///< the bytes on the disk
  std::unique_ptr<ProfileText> text_;
  std::vector<Change> pending_;
};

/// The cached file of a host path, kept until ForgetWorld().
ProfileFile& OpenProfile(const std::filesystem::path& path);

}  // namespace torvane::posix
