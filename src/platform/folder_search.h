// Looking for files for those who look for many: a drive is looked at once, then its folders one by
// one, and what a folder has shown stands as long as its object lives.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace torvane {

/// A folder in which entries are looked for by their names.
class FolderSearch {
 public:
  enum class Result {
    Found,
    Missing,
    Refused,  ///< the program may not look there: the entry may well exist
  };
  struct Entry {
    Result result = Result::Missing;
    std::u16string name = {};  ///< as the disk has it
    bool isFolder = false;
  };

  virtual ~FolderSearch() = default;
  /// The entry that a search for the folder's path, a backslash and `name` finds. The name holds
  /// none of /\*?<>"|: and closes with neither point nor blank.
  virtual Entry Find(std::u16string_view name) = 0;
  /// The folder that Find has found last.
  virtual std::unique_ptr<FolderSearch> Enter() const = 0;
};

/// A drive's root ("D:\") or a share ("\\server\share\").
class SearchRoot {
 public:
  enum class State {
    There,
    Gone,        ///< nothing can be looked for below it
    ServerGone,  ///< nor below any other share of its server
  };

  virtual ~SearchRoot() = default;
  virtual State state() const = 0;
  /// The root's own folder, of one that is there.
  virtual std::unique_ptr<FolderSearch> Folder() const = 0;
  /// Whether a path below the root leads to where only other programs get, so that what isn't found
  /// there may well exist: to a folder that a sandbox has to itself. Asks no disk.
  virtual bool IsOutOfReach(std::u16string_view path) const = 0;
  /// Whether it is a disk of this machine: to open one of its files costs no way over a network.
  virtual bool IsOfThisMachine() const = 0;
};

/// Looks at a root; a drive or server that doesn't answer takes its time.
std::unique_ptr<SearchRoot> LookAtRoot(const std::u16string& root);

}  // namespace torvane
