// What parts of files read like before this program changed them. Who puts back what a command
// deleted says which values there are; the lines between them, the comments and the forms in which
// the values were written, are in the text that stood there.
#pragma once

#include <cstddef>
#include <list>
#include <string>

namespace torvane::posix {

/// Texts of named parts (a key of a hive, a section of a profile file), kept in memory for the
/// session, 64 MB in all; the oldest go first.
class EarlierTexts {
 public:
  /// The one store. ForgetWorld() empties it.
  static EarlierTexts& Instance();

  /// `part` names the file too.
  void keep(std::string part, std::string text);

  /// The newest text of a part that `fits`; null for none. Valid until the next keep().
  template <typename Fits>
  const std::string* find(const std::string& part, Fits fits) const {
    for (const Entry& entry : entries_)
      if (entry.part == part && fits(entry.text)) return &entry.text;
    return nullptr;
  }

 private:
  struct Entry {
    std::string part;
    std::string text;
  };

  std::list<Entry> entries_;  ///< the newest in front
  std::size_t bytes_ = 0;
};

}  // namespace torvane::posix
