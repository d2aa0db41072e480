// A listing is trusted while the folder's stamp is what it was before the reading. Stamps move in
// steps of the file system's clock, so a listing that was read within one step of the stamp may
// miss what came later in that step, and is good for one answer only.
#include "platform/posix/paths/folder_cache.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/disk/reading_stamp.h"
#include "platform/posix/paths/short_name.h"
#include "platform/posix/text/code_page.h"
#include "platform/posix/text/letter_case.h"

namespace torvane::posix {
namespace {

/// Entries kept over all folders; beyond it the cache starts anew.
constexpr std::size_t kMostEntries = 1'000'000;

struct CachedFolder {
  std::shared_ptr<const FolderListing> listing;
  ReadingStamp stamp;
};

struct Cache {
  std::unordered_map<std::string, CachedFolder> folders;
  std::size_t entries = 0;
  std::uint64_t readings = 0;
};

Cache& TheCache() {
  static Cache cache;
  return cache;
}

const AtForget kForgetFolders([] {
  TheCache().folders.clear();
  TheCache().entries = 0;
});

/// A folder open for reading; none where it can't be read.
FileDescriptor OpenFolder(const std::string& folder) {
  constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
  return FileDescriptor(open(folder.empty() ? "/" : folder.c_str(), kFlags));
}

FolderEntry::Kind KindOf(unsigned char type) {
  if (type == DT_DIR) return FolderEntry::Kind::Folder;
  return type == DT_LNK || type == DT_UNKNOWN ? FolderEntry::Kind::Link : FolderEntry::Kind::File;
}

/// Calls `visit` with name and type of each entry; false where the folder can't be read.
template <class Visit>
bool ForEachName(const FileDescriptor& folder, const Visit& visit) {
  // On a slow file system each call is a way there and back.
  constexpr std::size_t kRoom = std::size_t{1} << 16U;
  const auto room = std::make_unique_for_overwrite<char[]>(kRoom);
  ssize_t size = 0;
  while (folder && (size = getdents64(folder.get(), room.get(), kRoom)) > 0) {
    for (ssize_t at = 0; at < size;) {
      const auto* const entry = reinterpret_cast<const dirent64*>(room.get() + at);
      const std::string_view name = entry->d_name;
      if (name != "." && name != "..") visit(name, KindOf(entry->d_type));
      at += entry->d_reclen;
    }
  }
  return folder && size == 0;
}

std::optional<std::vector<FolderEntry>> ReadEntries(const FileDescriptor& folder) {
  std::vector<FolderEntry> entries;
  const bool read = ForEachName(folder, [&](std::string_view name, FolderEntry::Kind kind) {
    entries.push_back({std::string(name), FromUtf8(name), kind});
  });
  if (!read) return std::nullopt;
  return entries;
}

/// Whether an entry has this name, folded, without case. Most entries differ early.
bool HasName(std::string_view entry, std::u16string_view folded) {
  for (std::size_t i = 0; i < entry.size(); ++i) {
    const auto byte = static_cast<unsigned char>(entry[i]);
    if (i == folded.size()) return false;
    if (byte >= 0x80) return FoldCase(FromUtf8(entry.substr(i))) == folded.substr(i);
    if (FoldCase(char16_t{byte}) != folded[i]) return false;
  }
  return entry.size() == folded.size();
}

/// The short name that Wine has for an entry, folded; empty where its name is short already.
std::u16string FoldedShortName(std::u16string_view entry) {
  return IsShortName(entry) ? std::u16string() : FoldCase(ShortName(entry));
}

/// What FolderListing::find would find, by a single pass over the folder.
std::optional<std::string> ScanFolder(const std::string& folder, std::u16string_view name) {
  const std::u16string folded = FoldCase(name);
  const bool mayBeShort = MayBeMadeShort(name);
  std::optional<std::string> first;
  std::optional<std::string> firstShort;
  const auto keepFirst = [](std::optional<std::string>& kept, std::string_view entry) {
    if (!kept || entry < *kept) kept = entry;
  };
  ForEachName(OpenFolder(folder), [&](std::string_view entry, FolderEntry::Kind /*kind*/) {
    if (HasName(entry, folded)) {
      keepFirst(first, entry);
    } else if (mayBeShort && FoldedShortName(FromUtf8(entry)) == folded) {
      keepFirst(firstShort, entry);
    }
  });
  return first ? first : firstShort;
}

bool HasTrustedListing(const std::string& folder) {
  const auto known = TheCache().folders.find(folder);
  return known != TheCache().folders.end() && known->second.stamp.isSettled();
}

bool Exists(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

}  // namespace

FolderListing::FolderListing(std::vector<FolderEntry> entries) {
  std::vector<std::pair<std::u16string, FolderEntry>> byFolded;
  byFolded.reserve(entries.size());
  for (FolderEntry& entry : entries) byFolded.emplace_back(FoldCase(entry.name), std::move(entry));
  std::sort(byFolded.begin(), byFolded.end(), [](const auto& left, const auto& right) {
    return std::tie(left.first, left.second.hostName) <
           std::tie(right.first, right.second.hostName);
  });
  entries_.reserve(byFolded.size());
  firstByFolded_.reserve(byFolded.size());
  for (auto& [folded, entry] : byFolded) {
    firstByFolded_.emplace(std::move(folded), entries_.size());
    entries_.push_back(std::move(entry));
  }
}

const FolderEntry* FolderListing::find(std::u16string_view name) const {
  const std::u16string folded = FoldCase(name);
  const auto first = firstByFolded_.find(folded);
  if (first == firstByFolded_.end()) return MayBeMadeShort(name) ? findShort(folded) : nullptr;
  for (std::size_t i = first->second; i < entries_.size(); ++i) {
    if (entries_[i].name == name) return &entries_[i];
    if (FoldCase(entries_[i].name) != folded) break;
  }
  return &entries_[first->second];
}

const FolderEntry* FolderListing::findShort(std::u16string_view folded) const {
  if (!firstByShort_) {
    firstByShort_.emplace();
    for (std::size_t i = 0; i < entries_.size(); ++i)
      firstByShort_->emplace(FoldedShortName(entries_[i].name), i);
  }
  const auto first = firstByShort_->find(std::u16string(folded));
  return first == firstByShort_->end() ? nullptr : &entries_[first->second];
}

std::shared_ptr<const FolderListing> KnownListing(const std::string& folder) {
  const auto known = TheCache().folders.find(folder);
  if (known == TheCache().folders.end() || !known->second.stamp.isSettled()) return nullptr;
  const bool holds = known->second.stamp.proves(StampOf(folder.empty() ? "/" : folder));
  return holds ? known->second.listing : nullptr;
}

std::shared_ptr<const FolderListing> ListFolder(const std::string& folder) {
  if (auto known = KnownListing(folder)) return known;
  Cache& cache = TheCache();
  if (const auto known = cache.folders.find(folder); known != cache.folders.end()) {
    cache.entries -= known->second.listing->entries().size();
    cache.folders.erase(known);
  }
  const FileDescriptor open = OpenFolder(folder);
  const std::int64_t now = FileClock();
  struct stat status {};
  if (!open || fstat(open.get(), &status) != 0) return nullptr;
  const FileStamp stamp = StampFrom(status);
  auto entries = ReadEntries(open);
  if (!entries) return nullptr;
  ++cache.readings;
  if (cache.entries + entries->size() > kMostEntries) {
    cache.folders.clear();
    cache.entries = 0;
  }
  cache.entries += entries->size();
  CachedFolder read{std::make_shared<const FolderListing>(std::move(*entries)),
                    ReadingStamp(stamp, now)};
  return cache.folders.emplace(folder, std::move(read)).first->second.listing;
}

std::optional<std::string> FindInFolder(const std::string& folder, std::u16string_view name) {
  // Asking for the exact name is cheaper than a reading, and all that a folder allows which may be
  // passed but not read.
  if (!HasTrustedListing(folder)) {
    std::string exact = ToUtf8(name);
    if (Exists(folder + "/" + exact)) return exact;
    // A listing of a folder in which something has just changed would answer this once only.
    if (!ReadingStamp(StampOf(folder), FileClock()).isSettled()) return ScanFolder(folder, name);
  }
  const auto listing = ListFolder(folder);
  const FolderEntry* entry = listing ? listing->find(name) : nullptr;
  if (entry == nullptr) return std::nullopt;
  return entry->hostName;
}

std::uint64_t FolderReadings() {
  return TheCache().readings;
}

}  // namespace torvane::posix
