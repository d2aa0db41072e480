// The values of one key: the lines of the hive file that hold them, and the changes on top.
//
// Three layers lie over one another; the uppermost that knows a value counts.
//
//   waiting   slots_   a: "1" from the file   b: erased   a2: ownLines_[0], set anew
//   written   the key's text since its last writing, in the image's ownTexts_; it takes the file's
//             place, and to this class is the file
//   file      texts_   [K] …  "a"="1"  "b"="2"
//
// A slot's views point into texts_, which are the image's, or into a line of ownLines_, which stays
// where it is until it is set again. A KeyValue's views are those of a slot, so they hold until the
// next change of the key. Nothing here outlives the texts: when they are replaced, the image drops
// this object. Texts from before the last writing are kept beside (EarlierTexts), as copies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/registry/hive_format.h"
#include "platform/posix/registry/name_index.h"

namespace torvane::posix {

/// A value as it stands in its key; the views hold until the next change of the key.
struct KeyValue {
  std::string_view name;  ///< escaped
  std::string_view data;  ///< for DecodeData

  std::u16string decodedName() const { return DecodeText(name); }
};

/// The values of a key. Finding, setting and erasing cost the same however many there are, and so
/// does each step of going through them by index, in either direction and with values being erased
/// or added on the way.
class KeyValues {
 public:
  /// `texts` are the key's pieces of the hive, from a key line to before the next; a key may stand
  /// in a file twice. They must outlive this object. None for a key that is new.
  explicit KeyValues(std::vector<std::string_view> texts);

  std::size_t count() const { return live_; }
  std::optional<KeyValue> find(std::u16string_view name) const;
  /// The value at a 0-based index, in the order of the file, new ones behind.
  std::optional<KeyValue> at(std::size_t index) const;

  void set(std::u16string_view name, const ValueData& data);
  /// Gives false where there is no such value.
  bool erase(std::u16string_view name);
  /// Makes the key count as changed even without a change of its values.
  void touch() { changed_ = true; }
  bool changed() const { return changed_; }

  /// In 16-bit units (names) and bytes (data), 0 without values.
  std::size_t longestName() const;
  std::size_t longestData() const;
  /// The key's class, and its time in 100 ns since 1601.
  std::u16string className() const;
  std::uint64_t time() const;

  /// Whether the values are, after whatever was changed and changed back, those of the file: the
  /// same names, types and bytes in the same order.
  bool isAsRead() const;
  /// The same of a text that once was the key's piece, and whose options and comments are those
  /// of the file now.
  bool fits(std::string_view text) const;

  /// Whether there is a change that another state of the key would need to be given.
  bool hasNewValues() const;
  /// Does to `other`, another state of the same key, what has been done to this one.
  void replayOnto(KeyValues& other) const;

  /// The key's piece of the hive with the changes and the time of the change. All other lines are
  /// as they were. `path` is the escaped path, for a key that is new.
  std::string render(std::string_view path, std::uint64_t time) const;
  /// A piece as it is, but for the time.
  static std::string WithTime(std::string_view text, std::uint64_t time);

 private:
  struct Slot {
    std::string_view line;
    std::string_view name;
    std::string_view data;
    std::int32_t own = -1;  ///< index of the line in ownLines_, -1 for one of the file
    bool alive = true;
    bool changed = false;
  };
  /// Where going by index stands: `before` live slots lie before `slot`.
  struct Cursor {
    std::size_t slot = 0;
    std::size_t before = 0;
  };

  void addFromFile(const HiveLine& line);
  void setOwnLine(Slot& slot, std::u16string_view name, const ValueData& data);
  template <typename Name>
  std::uint32_t findSlot(std::uint32_t hash, Name name) const;
  std::string renderNew(std::string_view path, std::uint64_t time) const;
  std::string newLines() const;
  void appendValueLine(std::string& out, const HiveLine& line, std::uint32_t number,
                       std::vector<bool>& written) const;

  std::vector<std::string_view> texts_;
  std::vector<Slot> slots_;
  std::vector<std::uint32_t> lineSlots_;  ///< for each value line of the file its slot
  NameIndex index_;                       ///< of the live slots
  std::deque<ValueLine> ownLines_;
  std::size_t fileSlots_ = 0;
  std::size_t live_ = 0;
  bool changed_ = false;
  mutable Cursor cursor_;
};

}  // namespace torvane::posix
