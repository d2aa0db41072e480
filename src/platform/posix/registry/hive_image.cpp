// One pass over the file checks every line and notes where each key's piece begins. A key that only
// stands in the paths of others has a node and no piece. Nodes name their paths by the bytes of the
// file, so that nothing of the file is held twice.
#include "platform/posix/registry/hive_image.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "platform/posix/disk/earlier_texts.h"
#include "platform/posix/prefix/new_hive.h"

namespace torvane::posix {
namespace {

constexpr std::size_t kDeepestPath = 512;
constexpr std::uint16_t kLongestName = 16383;
/// Where the lines of a key's piece end that aren't blank.
std::size_t EndOfLines(std::string_view text) {
  const std::size_t last = text.find_last_not_of(" \t\r\n");
  const std::size_t end = last == std::string_view::npos ? last : text.find('\n', last);
  return end == std::string_view::npos ? text.size() : end + 1;
}

constexpr DWORD kLinkType = 6;
constexpr std::u16string_view kLinkValue = u"SymbolicLinkValue";

}  // namespace

HiveImage::HiveImage(FileContent file, std::string header)
    : file_(std::move(file)), header_(std::move(header)) {
  nodes_.emplace_back().path = "";
  index_.add(HashName(u""), kRootKey);
  load(file_.stamp.exists() ? file_.view() : std::string_view(header_));
}

void HiveImage::report(std::size_t lineNumber, std::string_view what) {
  if (problem_.empty())
    problem_.append("line ").append(std::to_string(lineNumber)).append(": ").append(what);
}

void HiveImage::load(std::string_view text) {
  front_ = text;
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) {
    report(1, "the file is larger than 4 GB");
    return;
  }
  const std::size_t firstLine = std::min(text.find('\n'), text.size());
  if (std::string_view first = text.substr(0, firstLine);
      first != kHiveFirstLine && first != std::string(kHiveFirstLine) + '\r') {
    report(1, "this is no registry file of Wine, version 2");
    return;
  }
  LineScanner scanner(text.substr(firstLine));
  HiveLine line;
  KeyId current = kNone;
  std::size_t lineNumber = 1;
  while (scanner.next(line)) {
    loadLine(line, lineNumber, current);
    lineNumber = scanner.lineCount() + 1;
  }
  endRecord(text.data() + text.size());
  if (!records_.empty())
    front_ = text.substr(0, static_cast<std::size_t>(records_.front().text - text.data()));
}

void HiveImage::loadLine(const HiveLine& line, std::size_t lineNumber, KeyId& current) {
  if (line.problem != nullptr) report(lineNumber, line.problem);
  if (line.kind == HiveLine::Kind::Key) {
    endRecord(line.text.data());
    current = kNone;
    if (line.problem != nullptr) return;
    if (const auto path = splitSoundly(line.name)) {
      current = addRecord(*path, line.text.data());
    } else {
      report(lineNumber, "the key's path has too long a part or too many");
    }
  } else if (line.kind == HiveLine::Kind::Value && current == kNone) {
    report(lineNumber, "the value belongs to no key");
  } else if (line.kind == HiveLine::Kind::Option && current != kNone) {
    loadOption(line, current);
  }
}

void HiveImage::loadOption(const HiveLine& line, KeyId key) {
  if (line.rest.starts_with("#link") && !nodes_[key].isLink) {
    nodes_[key].isLink = true;
    ++links_;
  } else if (line.rest.starts_with(kClassOption) && key != kRootKey) {
    std::uint16_t& longest = nodes_[nodes_[key].parent].longestClass;
    const std::size_t units = CountUnits(ClassText(line.rest));
    longest = std::max(longest, static_cast<std::uint16_t>(std::min<std::size_t>(units, 0xFFFF)));
  }
}

/// Cuts a path of the file into ancestors_ and gives it, where it has empty parts without them:
/// Wine passes over those.
std::optional<std::string_view> HiveImage::splitSoundly(std::string_view escaped) {
  if (splitPath(escaped)) return escaped;
  const std::u16string path = DecodeText(escaped);
  std::u16string sound;
  for (const char16_t unit : path)
    if (unit != u'\\' || (!sound.empty() && sound.back() != u'\\')) sound += unit;
  if (sound.ends_with(u'\\')) sound.pop_back();
  const std::string& own = ownPaths_.emplace_back(EscapePath(sound));
  if (splitPath(own)) return own;
  return std::nullopt;
}

/// Cuts a path at its backslashes, into ancestors_. Gives false for a path that can't be.
bool HiveImage::splitPath(std::string_view escaped) {
  ancestors_.clear();
  NameHash hash;
  std::uint16_t units = 0;
  TextReader reader(escaped);
  const char* before = reader.position();
  for (char16_t unit = 0; reader.next(unit); before = reader.position()) {
    if (unit == u'\\') {
      if (units == 0) return false;
      ancestors_.push_back(
          {static_cast<std::size_t>(before - escaped.data()), hash.value(), units});
      units = 0;
    } else if (units++ == kLongestName) {
      return false;
    }
    hash.add(unit);
  }
  if (units == 0) return escaped.empty();
  ancestors_.push_back({escaped.size(), hash.value(), units});
  return ancestors_.size() <= kDeepestPath;
}

/// The key of the path in ancestors_, made with those above it where it isn't there.
KeyId HiveImage::addPath(std::string_view escaped) {
  KeyId key = kRootKey;
  std::size_t known = ancestors_.size();
  for (; known > 0; --known) {
    const Ancestor& ancestor = ancestors_[known - 1];
    const KeyId found = findKey(ancestor.hash, escaped.substr(0, ancestor.length));
    if (found == kNone) continue;
    key = found;
    break;
  }
  for (; known < ancestors_.size(); ++known) {
    Node& parent = nodes_[key];
    ++parent.subkeys;
    parent.longestSubkey = std::max(parent.longestSubkey, ancestors_[known].nameUnits);
    const KeyId added = addNode(escaped, ancestors_[known]);
    nodes_[added].parent = std::exchange(key, added);
  }
  return key;
}

KeyId HiveImage::addNode(std::string_view escaped, const Ancestor& ancestor) {
  const auto key = static_cast<KeyId>(nodes_.size());
  Node& node = nodes_.emplace_back();
  node.path = escaped.data();
  node.pathLength = static_cast<std::uint32_t>(ancestor.length);
  index_.add(ancestor.hash, key);
  return key;
}

template <typename Path>
KeyId HiveImage::findKey(std::uint32_t hash, Path path) const {
  return index_.find(hash, [&](KeyId key) { return SameName(nodes_[key].escapedPath(), path); });
}

KeyId HiveImage::addRecord(std::string_view escaped, const char* begin) {
  const KeyId key = addPath(escaped);
  appendRecord(key, begin, 0);
  return key;
}

/// Closes the piece that is being read, if one is.
void HiveImage::endRecord(const char* end) {
  if (!records_.empty() && records_.back().length == 0)
    records_.back().length = static_cast<std::uint32_t>(end - records_.back().text);
}

void HiveImage::appendRecord(KeyId key, const char* text, std::uint32_t length) {
  const auto record = static_cast<std::uint32_t>(records_.size());
  records_.push_back({text, length, kNone});
  Node& node = nodes_[key];
  if (node.firstRecord == kNone) {
    node.firstRecord = record;
  } else {
    records_[node.lastRecord].next = record;
  }
  node.lastRecord = record;
}

std::optional<KeyId> HiveImage::find(std::u16string_view path) const {
  if (lastFound_ != kNone && path.size() == lastPath_.size() &&
      std::memcmp(path.data(), lastPath_.data(), path.size() * sizeof(char16_t)) == 0) {
    return lastFound_;
  }
  const KeyId key = findKey(HashName(path), path);
  if (key == kNone) return std::nullopt;
  lastPath_ = path;
  lastFound_ = key;
  return key;
}

KeyId HiveImage::create(std::u16string_view path) {
  if (const auto known = find(path)) return *known;
  const std::string& escaped = ownPaths_.emplace_back(EscapePath(path));
  splitPath(escaped);
  const KeyId key = addPath(escaped);
  values(key).touch();
  return key;
}

KeySummary HiveImage::summary(KeyId key) const {
  return {nodes_[key].subkeys, nodes_[key].longestSubkey, nodes_[key].longestClass};
}

bool HiveImage::isBelow(KeyId key, KeyId above) const {
  while (key != kRootKey) {
    key = nodes_[key].parent;
    if (key == above) return true;
  }
  return false;
}

std::size_t HiveImage::textSize(KeyId key) const {
  std::size_t size = 0;
  for (const std::string_view text : textsOf(key)) size += text.size();
  return size;
}

std::vector<std::string_view> HiveImage::textsOf(KeyId key) const {
  std::vector<std::string_view> texts;
  for (std::uint32_t record = nodes_[key].firstRecord; record != kNone;
       record = records_[record].next)
    if (records_[record].length != 0) texts.push_back(records_[record].view());
  return texts;
}

KeyValues& HiveImage::values(KeyId key) {
  auto& values = values_[key];
  if (!values) values = std::make_unique<KeyValues>(textsOf(key));
  return *values;
}

std::vector<std::u16string> HiveImage::frontNames(KeyId key) {
  constexpr std::size_t kFront = 2;
  std::vector<std::u16string> names;
  const std::uint32_t record = nodes_[key].firstRecord;
  const bool isTouched = values_.contains(key);
  if (record == kNone && !isTouched) return names;
  if (isTouched || records_[record].next != kNone) {
    const KeyValues& all = values(key);
    for (std::size_t n = 0; n < std::min(kFront, all.count()); ++n)
      names.push_back(all.at(n)->decodedName());
    return names;
  }
  LineScanner scanner(records_[record].view());
  HiveLine line;
  while (names.size() < kFront && scanner.next(line)) {
    if (line.kind != HiveLine::Kind::Value || line.problem != nullptr) continue;
    // A name that stands there twice is one value.
    if (names.empty() || !SameName(line.name, names.front()))
      names.push_back(DecodeText(line.name));
  }
  return names;
}

std::optional<HiveImage::Link> HiveImage::findLink(std::u16string_view path) {
  if (links_ == 0) return std::nullopt;
  NameHash hash;
  for (std::size_t i = 0; i <= path.size(); ++i) {
    if (i == path.size() || path[i] == u'\\') {
      const KeyId key = findKey(hash.value(), path.substr(0, i));
      if (key == kNone) return std::nullopt;
      if (nodes_[key].isLink) {
        const auto value = values(key).find(kLinkValue);
        if (!value || DataType(value->data) != kLinkType) return Link{i, {}};
        return Link{i, UnitsOf(DecodeData(value->data).bytes)};
      }
    }
    if (i < path.size()) hash.add(path[i]);
  }
  return std::nullopt;
}

void HiveImage::replayOnto(HiveImage& other) const {
  for (const auto& [key, values] : values_) {
    // What was changed back isn't to be done to what others have made of the key.
    if (!values->changed() || values->isAsRead()) continue;
    const std::u16string path = DecodeText(nodes_[key].escapedPath());
    // Where there is only something to delete, a key that is gone meanwhile stays gone.
    const bool isWanted = values->hasNewValues() || nodes_[key].firstRecord == kNone;
    const auto target = isWanted ? other.create(path) : other.find(path);
    if (target) values->replayOnto(other.values(*target));
  }
}

std::string HiveImage::earlierName(KeyId key, const std::string& file) const {
  return file + '\0' + EscapePath(FoldCase(DecodeText(nodes_[key].escapedPath())));
}

std::string HiveImage::renderKey(KeyId key, std::uint64_t time, const std::string& file) const {
  const Node& node = nodes_[key];
  const KeyValues& values = *values_.at(key);
  const auto fits = [&values](const std::string& text) { return values.fits(text); };
  const std::string* earlier = nullptr;
  if (!file.empty() && node.firstRecord != kNone)
    earlier = EarlierTexts::Instance().find(earlierName(key, file), fits);
  if (earlier == nullptr) return values.render(node.escapedPath(), time);
  // The blank lines behind a key are those of the place where it stands.
  const std::string_view stands = records_[node.firstRecord].view();
  std::string text = KeyValues::WithTime(earlier->substr(0, EndOfLines(*earlier)), time);
  if (!text.ends_with('\n') && node.firstRecord + 1 != records_.size()) text += '\n';
  return text.append(stands.substr(EndOfLines(stands)));
}

std::vector<RenderedPiece> HiveImage::render(std::uint64_t time, const std::string& file) const {
  std::vector<KeyId> changed;
  for (const auto& [key, values] : values_)
    if (values->changed() && !values->isAsRead()) changed.push_back(key);
  std::sort(changed.begin(), changed.end());
  std::vector<RenderedPiece> pieces;
  auto added = static_cast<std::uint32_t>(records_.size());
  for (const KeyId key : changed) {
    const Node& node = nodes_[key];
    std::string text = renderKey(key, time, file);
    std::uint32_t record = node.firstRecord == kNone ? added++ : node.firstRecord;
    pieces.push_back({record, key, std::move(text)});
    // Its other pieces went into the first.
    while (record < records_.size() && (record = records_[record].next) != kNone)
      pieces.push_back({record, key, {}});
  }
  std::sort(pieces.begin(), pieces.end(),
            [](const auto& left, const auto& right) { return left.record < right.record; });
  return pieces;
}

/// Calls `take` with the texts of the whole file in their order. Those that lie behind one another
/// in the file's bytes come as one.
template <typename Take>
void HiveImage::forEachText(const std::vector<RenderedPiece>& pieces, Take take) const {
  std::string_view run = front_;
  const auto add = [&](std::string_view text) {
    if (run.data() + run.size() == text.data()) {
      run = {run.data(), run.size() + text.size()};
    } else {
      take(std::exchange(run, text));
    }
  };
  auto piece = pieces.begin();
  for (std::uint32_t record = 0; record < records_.size(); ++record) {
    const bool isRendered = piece != pieces.end() && piece->record == record;
    add(isRendered ? std::string_view((piece++)->text) : records_[record].view());
  }
  for (; piece != pieces.end(); ++piece) add(piece->text);
  take(run);
}

void HiveImage::write(const std::vector<RenderedPiece>& pieces, FileReplacement& out) const {
  forEachText(pieces, [&out](std::string_view text) { out.append(text); });
}

bool HiveImage::isReadFrom(std::string_view bytes) const {
  bool isSame = true;
  forEachText({}, [&](std::string_view text) {
    isSame = isSame && bytes.starts_with(text);
    if (isSame) bytes.remove_prefix(text.size());
  });
  return isSame && bytes.empty();
}

void HiveImage::adopt(std::vector<RenderedPiece> pieces, const std::string& file) {
  for (RenderedPiece& piece : pieces) {
    if (piece.record == records_.size()) appendRecord(piece.key, nullptr, 0);
    if (nodes_[piece.key].firstRecord == piece.record) keepEarlier(piece.key, file);
    const std::string& own = ownTexts_[piece.record] = std::move(piece.text);
    records_[piece.record].text = own.data();
    records_[piece.record].length = static_cast<std::uint32_t>(own.size());
  }
  // What was changed and has no piece is as it was read.
  std::erase_if(values_, [](const auto& values) { return values.second->changed(); });
}

/// Keeps what stands in the file for a key, before another text does. Of a key that stands there
/// twice the pieces become one, and don't come apart again.
void HiveImage::keepEarlier(KeyId key, const std::string& file) const {
  const auto texts = textsOf(key);
  if (texts.size() == 1)
    EarlierTexts::Instance().keep(earlierName(key, file), std::string(texts.front()));
}

}  // namespace torvane::posix
