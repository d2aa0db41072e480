// A hive file as one of those that are shared with other programs.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/posix/disk/shared_file.h"
#include "platform/posix/registry/hive_image.h"

namespace torvane::posix {

enum class HiveRole {
  User,     ///< user.reg: changed unless Wine holds it in memory
  Machine,  ///< system.reg: read only
  Own,      ///< torvane.reg: unknown to Wine, changed at any time
};

class Hive final : public SharedFile {
 public:
  /// `file` need not exist; it lies in the prefix's folder.
  Hive(std::filesystem::path file, HiveRole role);

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

 private:
  void load(FileContent content) override;
  void loadFresh(FileContent content) override;
  void loadFailed(const std::system_error& error) override;
  bool isReadFrom(std::string_view bytes) const override { return current().isReadFrom(bytes); }
  bool render() override;
  void write(FileReplacement& out) const override { current().write(pieces_, out); }
  void adopt() override;
  void abandon() override;
  void checkUse() const override;
  std::unique_ptr<WriteHold> holdOff() override;

  const HiveImage& current() const { return fresh_ ? *fresh_ : *image_; }
  std::unique_ptr<HiveImage> parse(FileContent content) const;

  HiveRole role_;
  std::unique_ptr<HiveImage> image_;
  std::unique_ptr<HiveImage> fresh_;
  std::vector<RenderedPiece> pieces_;
  std::string readError_;
  std::uint64_t generation_ = 0;
};

}  // namespace torvane::posix
