// Listings of the host's folders, kept while the folder's time stamp stands, so that ten thousand
// names in one folder cost one reading of it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace torvane::posix {

/// An entry of a folder.
struct FolderEntry {
  enum class Kind : std::uint8_t { File, Folder, Link };  ///< a link may lead to either or nowhere
  std::string hostName;                                   ///< bytes as the host has them
  std::u16string name;
  Kind kind = Kind::Link;
};

/// One reading of a folder. Entries stand in the order of their names without case.
class FolderListing {
 public:
  explicit FolderListing(std::vector<FolderEntry> entries);

  const std::vector<FolderEntry>& entries() const { return entries_; }
  /// The entry of this name, else the first whose name differs in case only, else the first that
  /// has it for its short name; null for none.
  const FolderEntry* find(std::u16string_view name) const;

 private:
  const FolderEntry* findShort(std::u16string_view folded) const;

  using Places = std::unordered_map<std::u16string, std::size_t>;
  std::vector<FolderEntry> entries_;
  Places firstByFolded_;
  mutable std::optional<Places> firstByShort_;  ///< made when it is first needed
};

/// The listing of a folder as it is now, without "." and ".."; null where it can't be read. A
/// folder is a path without a closing slash, so the root is empty.
std::shared_ptr<const FolderListing> ListFolder(const std::string& folder);

/// A listing that was made earlier and still holds; null for none.
std::shared_ptr<const FolderListing> KnownListing(const std::string& folder);

/// The host's name of a folder's entry, found without case where the exact name isn't there, and by
/// its short name where that isn't. A link that leads nowhere is an entry.
std::optional<std::string> FindInFolder(const std::string& folder, std::u16string_view name);

/// How often a folder has been read since the program's start.
std::uint64_t FolderReadings();

}  // namespace torvane::posix
