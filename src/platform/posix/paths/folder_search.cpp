// A name as it stands is asked for first: that is one call. Where it isn't there the folder is
// read, for another case or a short name, and its listing answers from then on.
//
// A prefix that a sandbox made maps drives to places as the sandbox has them: its own folders,
// which aren't there outside, or are there but aren't the same.
#include "platform/folder_search.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <span>
#include <utility>

#include "platform/posix/paths/folder_cache.h"
#include "platform/posix/paths/host_lookup.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/text/code_page.h"
#include "platform/posix/text/letter_case.h"

namespace torvane {
namespace {

using posix::FolderListing;

class HostFolder : public FolderSearch {
 public:
  explicit HostFolder(std::string path) : path_(std::move(path)) {}

  Entry Find(std::u16string_view name) override {
    found_.clear();
    if (posix::IsDeviceName(name)) return {Result::Found, std::u16string(name), false};
    if (!isKnown_) {
      isKnown_ = true;
      listing_ = posix::KnownListing(path_);
    }
    if (!listing_) {
      if (!posix::IsFileName(name)) return {};
      Entry exact = Look(posix::ToUtf8(name));
      if (exact.result != Result::Missing || errno == ENAMETOOLONG || isUnreadable_) return exact;
      listing_ = posix::ListFolder(path_);
      // Of a folder that can be passed but not read, only exact names are known.
      isUnreadable_ = !listing_;
      if (isUnreadable_) return exact;
    }
    const posix::FolderEntry* const entry = listing_->find(name);
    if (entry == nullptr || !posix::IsFileName(name)) return {};
    if (entry->kind == posix::FolderEntry::Kind::Link) return Look(entry->hostName);
    found_ = entry->hostName;
    return {Result::Found, entry->name, entry->kind == posix::FolderEntry::Kind::Folder};
  }

  std::unique_ptr<FolderSearch> Enter() const override {
    return std::make_unique<HostFolder>(path_ + "/" + found_);
  }

 private:
  /// The entry of that name and no other; `errno` says why it isn't there.
  Entry Look(const std::string& hostName) {
    struct stat status {};
    if (stat((path_ + "/" + hostName).c_str(), &status) != 0) {
      return {errno == EACCES ? Result::Refused : Result::Missing};
    }
    found_ = hostName;
    return {Result::Found, posix::FromUtf8(hostName), S_ISDIR(status.st_mode)};
  }

  std::string path_;      ///< without a closing slash
  bool isKnown_ = false;  ///< whether an earlier listing has been asked for
  bool isUnreadable_ = false;
  std::shared_ptr<const FolderListing> listing_;
  std::string found_;  ///< the host's name of the entry that was found last
};

/// Folders that a Flatpak has to itself, wherever a drive leads there.
constexpr std::string_view kSandboxOwn[] = {
    "/app/",        "/newroot/",  "/run/flatpak/",      "/run/host/",
    "/var/config/", "/var/data/", "/run/build-runtime/"};
/// And those that every program has, but a sandboxed one apart from the others.
constexpr std::string_view kSandboxApart[] = {"/tmp/", "/var/tmp/", "/var/cache/"};

bool IsIn(std::string_view path, std::span<const std::string_view> folders) {
  return std::ranges::any_of(folders,
                             [&](std::string_view folder) { return path.starts_with(folder); });
}

/// Whether a path below `path` may be in one of the folders.
bool LeadsTo(std::string_view path, std::span<const std::string_view> folders) {
  return std::ranges::any_of(folders,
                             [&](std::string_view folder) { return folder.starts_with(path); });
}

/// Whether a sandbox has made the prefix: it lies in the home of a Flatpak or a Snap.
bool IsSandboxed(const std::string& prefix) {
  return prefix.find("/.var/app/") != prefix.npos || prefix.find("/snap/") != prefix.npos;
}

/// Whether a file system keeps its files on this machine's disks and not behind a network.
bool IsLocal(const std::string& folder) {
  constexpr std::uint32_t kFuse = 0x65735546;
  constexpr std::uint32_t kNetwork[] = {0x6969,     0x517B,     0xFF534D42, 0xFE534D42,
                                        0x5346414F, 0x00C36400, 0x01021997, 0x73757245};
  struct statfs system {};
  struct stat status {};
  if (statfs(folder.c_str(), &system) != 0) return false;
  const auto type = static_cast<std::uint32_t>(system.f_type);
  // Behind FUSE there may be a disk, which has a number, or whatever else.
  if (type == kFuse) return stat(folder.c_str(), &status) == 0 && major(status.st_dev) != 0;
  return std::ranges::find(kNetwork, type) == std::end(kNetwork);
}

class DriveSearch : public SearchRoot {
 public:
  explicit DriveSearch(posix::Drive drive) : drive_(std::move(drive)) {
    const std::string& prefix = posix::PrefixRoot().native();
    if (!drive_.target.starts_with('/')) return;
    target_ = drive_.target.ends_with('/') ? drive_.target : drive_.target + "/";
    isSandboxed_ = IsSandboxed(prefix);
    isOutOfReach_ = drive_.error == EACCES || IsIn(target_, kSandboxOwn) ||
                    (drive_.error != 0 && isSandboxed_) ||
                    (isSandboxed_ && IsIn(target_, kSandboxApart));
    hasOutOfReach_ =
        LeadsTo(target_, kSandboxOwn) || (isSandboxed_ && LeadsTo(target_, kSandboxApart));
  }

  State state() const override { return drive_.error == 0 ? State::There : State::Gone; }
  std::unique_ptr<FolderSearch> Folder() const override {
    return std::make_unique<HostFolder>(drive_.root);
  }
  bool IsOutOfReach(std::u16string_view path) const override {
    if (isOutOfReach_ || !hasOutOfReach_) return isOutOfReach_;
    const auto parts = posix::SplitWindowsPath(path);
    if (!parts || parts->device) return false;
    std::string host = target_;
    for (const std::u16string& part : parts->parts) host.append(posix::ToUtf8(part)).append("/");
    return IsIn(host, kSandboxOwn) || (isSandboxed_ && IsIn(host, kSandboxApart));
  }
  bool IsOfThisMachine() const override {
    if (!isLocal_) isLocal_ = drive_.error == 0 && IsLocal(drive_.root + "/");
    return *isLocal_;
  }

 private:
  posix::Drive drive_;
  std::string target_;  ///< with a closing slash; empty where the drive leads into the prefix
  bool isSandboxed_ = false;
  bool isOutOfReach_ = false;   ///< whatever lies below
  bool hasOutOfReach_ = false;  ///< there may be such folders below
  mutable std::optional<bool> isLocal_;
};

/// The layer has no servers.
class NoServer : public SearchRoot {
 public:
  State state() const override { return State::ServerGone; }
  std::unique_ptr<FolderSearch> Folder() const override { return nullptr; }
  bool IsOutOfReach(std::u16string_view /*path*/) const override { return false; }
  bool IsOfThisMachine() const override { return false; }
};

}  // namespace

std::unique_ptr<SearchRoot> LookAtRoot(const std::u16string& root) {
  if (root.size() != 3 || root[1] != u':') return std::make_unique<NoServer>();
  return std::make_unique<DriveSearch>(posix::LookAtDrive(posix::FoldCase(root[0])));
}

}  // namespace torvane
