// A hive in memory: the bytes of its file, an index of its keys, and the changes made to them.
//
//   file_.bytes   WINE REGISTRY…|[A] …      |[B] …      |[A] …      |     as read, to the end
//                 ^ front_       ^ record 0  ^ record 1  ^ record 2
//   nodes_         A: path ------^  first record 0, last 2, linked by Record::next
//                  B: path -------------------^
//   ownTexts_      record 1 -> "[B] …"         what was written for B since the reading
//   values_        B -> KeyValues              parsed when B was first asked for
//
// A record's text points into file_.bytes (into header_ where there is no file), or, once its key
// has been written, into ownTexts_. Records are never moved; a new key's goes behind them. A node's
// path points into the key line that it was read from, or into ownPaths_: file_.bytes stay as long
// as the image does, so a path outlives the text that its key has now. The rendered pieces own
// their texts until adopt() moves those into ownTexts_, and with that ends every KeyValues of a
// changed key: what values() gave for one holds up to adopt(), all else as long as the image.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/registry/key_values.h"
#include "platform/posix/registry/name_index.h"

namespace torvane::posix {

/// Names a key of one HiveImage.
using KeyId = std::uint32_t;
inline constexpr KeyId kRootKey = 0;

/// What is known of a key without reading its values.
struct KeySummary {
  std::size_t subkeys = 0;
  std::size_t longestSubkey = 0;  ///< in 16-bit units
  std::size_t longestClass = 0;   ///< of the keys right below, in 16-bit units
};

/// A changed piece of the file, made by HiveImage::render.
struct RenderedPiece {
  std::uint32_t record;  ///< which piece it replaces; behind the last for a new one
  KeyId key;
  std::string text;
};

/// A parsed hive. The bytes are held once; the values of a key are parsed when it is first touched,
/// and a changed key gets a text of its own while all others stay as they were read. Key paths are
/// relative to the hive's root, without a backslash before or behind.
class HiveImage {
 public:
  /// Reads what can be read. `header` stands in for the content of a file that isn't there.
  HiveImage(FileContent file, std::string header);
  HiveImage(const HiveImage&) = delete;
  HiveImage& operator=(const HiveImage&) = delete;

  /// The first thing that is wrong with the file ("line 12: ..."); empty for a sound one. What is
  /// not sound must not be written.
  const std::string& problem() const { return problem_; }

  std::optional<KeyId> find(std::u16string_view path) const;
  /// Finds the key or makes it, with the keys above it.
  KeyId create(std::u16string_view path);
  KeySummary summary(KeyId key) const;
  KeyValues& values(KeyId key);
  /// The names of a key's first two values, without reading the others of one that hasn't been
  /// touched.
  std::vector<std::u16string> frontNames(KeyId key);
  /// All keys have numbers below this.
  std::size_t keyCount() const { return nodes_.size(); }
  bool isBelow(KeyId key, KeyId above) const;
  /// How many bytes of the file the key's own lines take.
  std::size_t textSize(KeyId key) const;
  std::u16string path(KeyId key) const { return DecodeText(nodes_[key].escapedPath()); }

  /// The uppermost key on the way to `path`, itself included, that is a symbolic link.
  struct Link {
    std::size_t pathLength;  ///< length of the link's own path, in units
    std::u16string target;   ///< as stored ("\Registry\Machine\...")
  };
  std::optional<Link> findLink(std::u16string_view path);

  /// Does to `other`, another state of the same hive, what has been done to this one.
  void replayOnto(HiveImage& other) const;

  /// Saving: makes the texts of the changed keys, appends the whole file to `out`, and takes the
  /// texts over once they are on the disk. A key that is as it was read gets none, and one that is
  /// as it was before a change of ours, the text that it had then; `file` names the hive among the
  /// earlier texts.
  std::vector<RenderedPiece> render(std::uint64_t time, const std::string& file = {}) const;
  void write(const std::vector<RenderedPiece>& pieces, FileReplacement& out) const;
  void adopt(std::vector<RenderedPiece> pieces, const std::string& file);
  /// Whether these are the bytes that were read, or written since.
  bool isReadFrom(std::string_view bytes) const;

 private:
  static constexpr std::uint32_t kNone = NameIndex::kNone;
  /// A key, in the file or implied by one below it.
  struct Node {
    const char* path = nullptr;  ///< escaped
    std::uint32_t pathLength = 0;
    std::uint32_t parent = kNone;
    std::uint32_t subkeys = 0;
    std::uint16_t longestSubkey = 0;  ///< in units
    std::uint16_t longestClass = 0;   ///< in units
    bool isLink = false;
    std::uint32_t firstRecord = kNone;
    std::uint32_t lastRecord = kNone;

    std::string_view escapedPath() const { return {path, pathLength}; }
  };
  /// A piece of the file, from a key line to before the next.
  struct Record {
    const char* text = nullptr;
    std::uint32_t length = 0;
    std::uint32_t next = kNone;  ///< of the same key

    std::string_view view() const { return {text, length}; }
  };
  /// The end of a part of a path that names a key, and that key's hash.
  struct Ancestor {
    std::size_t length;  ///< of the escaped path, in bytes
    std::uint32_t hash;
    std::uint16_t nameUnits;  ///< of the last name in it
  };

  void load(std::string_view text);
  void loadLine(const HiveLine& line, std::size_t lineNumber, KeyId& current);
  void loadOption(const HiveLine& line, KeyId key);
  void report(std::size_t lineNumber, std::string_view what);
  std::optional<std::string_view> splitSoundly(std::string_view escaped);
  bool splitPath(std::string_view escaped);
  KeyId addPath(std::string_view escaped);
  KeyId addNode(std::string_view escaped, const Ancestor& ancestor);
  KeyId addRecord(std::string_view escaped, const char* begin);
  void endRecord(const char* end);
  void appendRecord(KeyId key, const char* text, std::uint32_t length);
  template <typename Path>
  KeyId findKey(std::uint32_t hash, Path path) const;
  std::vector<std::string_view> textsOf(KeyId key) const;
  std::string earlierName(KeyId key, const std::string& file) const;
  void keepEarlier(KeyId key, const std::string& file) const;
  std::string renderKey(KeyId key, std::uint64_t time, const std::string& file) const;
  template <typename Take>
  void forEachText(const std::vector<RenderedPiece>& pieces, Take take) const;

  FileContent file_;
  std::string header_;
  std::string_view front_;  ///< what stands before the first key
  std::string problem_;
  std::deque<Node> nodes_;
  std::deque<Record> records_;
  NameIndex index_;                  ///< by path
  std::vector<Ancestor> ancestors_;  ///< of the path in hand
  std::size_t links_ = 0;
  mutable std::u16string lastPath_;  ///< what was found last: a list opens one key for each value
  mutable KeyId lastFound_ = kNone;
  std::deque<std::string> ownPaths_;
  std::unordered_map<KeyId, std::unique_ptr<KeyValues>> values_;
  std::unordered_map<std::uint32_t, std::string> ownTexts_;  ///< by record
};

}  // namespace torvane::posix
