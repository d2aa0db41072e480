// A hive file that is shared with other programs: read anew when they have changed it, and written
// whole, with our changes on top of theirs.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/posix/hive_image.h"
#include "platform/posix/write_back.h"

namespace torvane::posix {

enum class HiveRole {
  User,     ///< user.reg: changed unless Wine holds it in memory
  Machine,  ///< system.reg: read only
  Own,      ///< torvane.reg: unknown to Wine, changed at any time
};

/// What stands before the keys of a new hive; `architecture` is an "#arch=" line's value.
std::string HiveHeader(HiveRole role, std::string_view architecture);

class Hive final : public ChangedFile {
 public:
  /// `file` need not exist; it lies in the prefix's folder.
  Hive(std::filesystem::path file, HiveRole role);

  /// Reads the file if that hasn't been done, and anew if someone has changed it and no change of
  /// ours waits.
  void refresh();
  /// The hive as read, which refresh() has done.
  HiveImage& image() { return *image_; }
  /// Another number for each reading of the file: the KeyIds of an older one mean nothing.
  std::uint64_t generation() const { return generation_; }
  /// What is wrong with the file ("user.reg, line 12: ..."); empty for a sound one.
  std::string problem() const;

  /// Whether a change may be made now: ERROR_SUCCESS, or ERROR_ACCESS_DENIED,
  /// ERROR_REGISTRY_CORRUPT or ERROR_SHARING_VIOLATION. A refusal leaves a note for
  /// TakeRefusalNote().
  LSTATUS mayChange();
  /// To be called after a change of the image, so that it is written back.
  void noteChange();

  void writeBack() override;
  std::string hostPath() const override { return file_.string(); }

 private:
  bool isCurrent() const;
  std::unique_ptr<HiveImage> read();
  std::unique_ptr<HiveImage> takeOver();

  std::filesystem::path file_;
  HiveRole role_;
  std::unique_ptr<HiveImage> image_;
  std::string readError_;
  bool isLink_ = false;  ///< the file's name is a symbolic link
  std::uint64_t generation_ = 0;
  bool isPending_ = false;  ///< changes wait
  bool isChecked_ = false;  ///< since the last writing, changing was found to be allowed
};

}  // namespace torvane::posix
