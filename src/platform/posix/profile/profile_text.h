// The text of a profile file: sections of lines, each kept byte for byte until it is changed.
//
//   [section]        a name in brackets; what stands behind them means nothing
//   key = value      a key runs to the first '='; blanks around both don't count
//   ; comment        kept and passed over
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/posix/profile/profile_encoding.h"
#include "platform/posix/text/name_hash.h"

namespace torvane::posix {

/// A profile file in memory. Names compare without case, and the first of equal ones counts.
/// Reading, changing and removing a key cost the same whatever the size of the file.
class ProfileText {
 public:
  /// Takes the file's bytes, in the encoding that ProfileEncoding says.
  explicit ProfileText(std::string bytes);
  ProfileText(const ProfileText&) = delete;
  ProfileText& operator=(const ProfileText&) = delete;

  /// The value as it stands behind the '=', without blanks around it; nothing where section or key
  /// is missing or the key's line has no '='.
  std::optional<std::u16string> value(std::u16string_view section, std::u16string_view key) const;
  /// The names of the keys that have an '=', in the order of the file; nothing for no such section.
  std::optional<std::vector<std::u16string>> keys(std::u16string_view section) const;
  /// The lines of a section that aren't blank and no comments, as "name=value" without the blanks
  /// around both, or the name alone where there is no '='.
  std::vector<std::u16string> entries(std::u16string_view section) const;
  /// Whether there is a line of the key, or where that is nothing, the section.
  bool contains(std::u16string_view section, const std::optional<std::u16string>& key) const;
  /// The sections' names in the order of the file, but for empty ones.
  std::vector<std::u16string> sections() const;

  /// Whether the file's encoding has every character of the text.
  bool canHold(std::u16string_view text) const { return encoding_.canHold(text); }

  /// Whether an entry of the section has bytes that its text doesn't lead back to.
  bool isBroken(std::u16string_view section) const;

  /// Changes the key's line, or adds one behind the section's last line that isn't blank, a new
  /// section at the file's end. Throws std::system_error (EILSEQ) and changes nothing where the
  /// file's encoding hasn't a character of it.
  void set(std::u16string_view section, std::u16string_view key, std::u16string_view value);
  /// Makes these the section's entries, as entries() gives them. What stands in front of the first
  /// that changes isn't touched, nor are comments and blank lines. Throws as set() does.
  void setEntries(std::u16string_view section, const std::vector<std::u16string>& entries);
  void removeKey(std::u16string_view section, std::u16string_view key);
  void removeSection(std::u16string_view section);

  /// The file's bytes as they are now. A section whose keys are, after whatever was changed and
  /// changed back, as they were read has its bytes back, and one that is as it was before an
  /// earlier change of ours, those that it had then, and its place; `file` names the file among the
  /// earlier texts.
  std::string bytes(const std::string& file = {}) const;
  /// Keeps the texts of the changed sections as they were read, for later bytes().
  void keepEarlier(const std::string& file) const;

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct Line {
    std::string_view bytes;          ///< with its line end; in source_ or made_
    std::size_t nextOfName = kNone;  ///< the section's next line with this key
    bool blank = false;
    bool live = true;
  };
  /// The first and the last of equal names, which are linked through nextOfName.
  struct Chain {
    std::size_t first = kNone;
    std::size_t last = kNone;
  };
  using Index = std::unordered_map<std::u16string, Chain, NameHasher>;

  struct Section {
    std::u16string name;
    std::string_view header;              ///< with its line end; empty for the lines ahead of any
    std::vector<Line> lines;              ///< up to the last that isn't blank
    std::deque<std::string_view> blanks;  ///< the blank lines at the end
    Index keys;
    std::size_t nextOfName = kNone;
    std::string_view asRead;  ///< header, lines and blanks in source_; empty for a new one
    bool live = true;
    bool changed = false;
    bool remade = false;  ///< removed and made anew, its comments gone
  };

  void parse();
  void addSection(std::u16string_view name, std::string_view header);
  std::string_view takeLine(std::string_view& rest) const;
  const Section* find(std::u16string_view name) const;
  Section* find(std::u16string_view name);
  Section& findOrMake(std::u16string_view name);
  Section* revive(std::u16string_view name);
  void parseAnew();
  void endLine(std::string_view& line);
  void appendEntry(Section& section, std::u16string_view key, std::u16string_view entry);
  void changeLine(Line& line, std::u16string_view value);

  /// What the lines of a section say: keys with their values, and what has no value.
  struct Said {
    std::vector<std::u16string> keys;
    std::vector<std::u16string> others;
  };
  void addSaid(std::string_view bytes, Said& said) const;
  Said saidBy(const Section& section) const;
  Said saidBy(std::string_view text) const;
  std::optional<std::string_view> earlierText(const Section& section,
                                              const std::string& file) const;
  std::vector<const Section*> inOrder(const std::string& file) const;
  std::size_t earlierPlace(const Section& section, const std::string& file,
                           const std::vector<const Section*>& sections) const;
  std::string namesAhead(const Section& section) const;
  static std::string earlierName(const Section& section, const std::string& file);
  std::string_view lineEndOf(std::string_view line) const;
  std::string_view keep(std::string bytes);

  template <typename Entry>
  static void link(Index& index, std::u16string_view name, std::vector<Entry>& entries,
                   std::size_t added);
  template <typename Entry>
  static std::size_t unlinkFirst(Index& index, std::u16string_view name,
                                 const std::vector<Entry>& entries);
  static void moveBlanks(Section& section);

  std::string source_;
  ProfileEncoding encoding_;
  std::deque<std::string> made_;
  std::vector<Section> sections_;
  Index sectionIndex_;
  std::string lineEnd_;  ///< the file's first, in the file's encoding
};

}  // namespace torvane::posix
