// One pass over the file checks every line and notes where each key's piece begins. A key that only
// stands in the paths of others has a node and no piece. Nodes name their paths by the bytes of the
// file, so that nothing of the file is held twice.
#include "platform/posix/hive_image.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace torvane::posix {
namespace {

constexpr std::size_t kDeepestPath = 512;
constexpr std::uint16_t kLongestName = 16383;
constexpr DWORD kLinkType = 6;
constexpr std::u16string_view kLinkValue = u"SymbolicLinkValue";

}  // namespace

HiveImage::HiveImage(FileContent file, std::string header)
    : file_(std::move(file)), header_(std::move(header)), index_(1024, kNone) {
  nodes_.emplace_back().hash = kHashStart;
  nodes_.front().path = "";
  addToIndex(kRootKey);
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
    if (splitPath(line.name)) {
      current = addRecord(line.name, line.text.data());
    } else {
      report(lineNumber, "the key's path has an empty part, too long a one or too many");
    }
  } else if (line.kind == HiveLine::Kind::Value && current == kNone) {
    report(lineNumber, "the value belongs to no key");
  } else if (line.kind == HiveLine::Kind::Option && current != kNone) {
    loadOption(line, current);
  }
}

void HiveImage::loadOption(const HiveLine& line, KeyId key) {
  if (line.text.starts_with("#link") && !nodes_[key].isLink) {
    nodes_[key].isLink = true;
    ++links_;
  } else if (line.text.starts_with(kClassOption) && key != kRootKey) {
    std::uint16_t& longest = nodes_[nodes_[key].parent].longestClass;
    const std::size_t units = CountUnits(ClassText(line.text));
    longest = std::max(longest, static_cast<std::uint16_t>(std::min<std::size_t>(units, 0xFFFF)));
  }
}

/// Cuts a path at its backslashes, into ancestors_. Gives false for a path that can't be.
bool HiveImage::splitPath(std::string_view escaped) {
  ancestors_.clear();
  std::uint32_t hash = kHashStart;
  std::uint16_t units = 0;
  TextReader reader(escaped);
  const char* before = reader.position();
  for (char16_t unit = 0; reader.next(unit); before = reader.position()) {
    if (unit == u'\\') {
      if (units == 0) return false;
      ancestors_.push_back({static_cast<std::size_t>(before - escaped.data()), hash, units});
      units = 0;
    } else if (units++ == kLongestName) {
      return false;
    }
    hash = HashUnit(hash, unit);
  }
  if (units == 0) return escaped.empty();
  ancestors_.push_back({escaped.size(), hash, units});
  return ancestors_.size() <= kDeepestPath;
}

/// The key of the path in ancestors_, made with those above it where it isn't there.
KeyId HiveImage::addPath(std::string_view escaped) {
  KeyId key = kRootKey;
  std::size_t known = ancestors_.size();
  for (; known > 0; --known) {
    const Ancestor& ancestor = ancestors_[known - 1];
    const KeyId found = index_[position(ancestor.hash, escaped.substr(0, ancestor.length))];
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
  node.hash = ancestor.hash;
  addToIndex(key);
  return key;
}

/// Where in the index a path stands, or the free place that ends the search for it.
template <typename Path>
std::size_t HiveImage::position(std::uint32_t hash, Path path) const {
  const std::size_t mask = index_.size() - 1;
  std::size_t at = hash & mask;
  for (; index_[at] != kNone; at = (at + 1) & mask) {
    const Node& node = nodes_[index_[at]];
    if (node.hash == hash && SameName(node.escapedPath(), path)) break;
  }
  return at;
}

void HiveImage::addToIndex(KeyId key) {
  const auto enter = [this](KeyId entered) {
    const std::size_t mask = index_.size() - 1;
    std::size_t at = nodes_[entered].hash & mask;
    while (index_[at] != kNone) at = (at + 1) & mask;
    index_[at] = entered;
  };
  if (nodes_.size() * 3 > index_.size() * 2) {
    index_.assign(index_.size() * 2, kNone);
    for (KeyId known = 0; known < key; ++known) enter(known);
  }
  enter(key);
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
  const KeyId key = index_[position(HashName(path), path)];
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

std::optional<HiveImage::Link> HiveImage::findLink(std::u16string_view path) {
  if (links_ == 0) return std::nullopt;
  std::uint32_t hash = kHashStart;
  for (std::size_t i = 0; i <= path.size(); ++i) {
    if (i == path.size() || path[i] == u'\\') {
      const KeyId key = index_[position(hash, path.substr(0, i))];
      if (key == kNone) return std::nullopt;
      if (nodes_[key].isLink) {
        const auto value = values(key).find(kLinkValue);
        if (!value || DataType(value->data) != kLinkType) return Link{i, {}};
        return Link{i, UnitsOf(DecodeData(value->data).bytes)};
      }
    }
    if (i < path.size()) hash = HashUnit(hash, path[i]);
  }
  return std::nullopt;
}

void HiveImage::replayOnto(HiveImage& other) const {
  for (const auto& [key, values] : values_) {
    if (!values->changed()) continue;
    const std::u16string path = DecodeText(nodes_[key].escapedPath());
    // Where there is only something to delete, a key that is gone meanwhile stays gone.
    const bool isWanted = values->hasNewValues() || nodes_[key].firstRecord == kNone;
    const auto target = isWanted ? other.create(path) : other.find(path);
    if (target) values->replayOnto(other.values(*target));
  }
}

std::vector<RenderedPiece> HiveImage::render(std::uint64_t time) const {
  std::vector<KeyId> changed;
  for (const auto& [key, values] : values_)
    if (values->changed()) changed.push_back(key);
  std::sort(changed.begin(), changed.end());
  std::vector<RenderedPiece> pieces;
  auto added = static_cast<std::uint32_t>(records_.size());
  for (const KeyId key : changed) {
    const Node& node = nodes_[key];
    std::string text = values_.at(key)->render(node.escapedPath(), time);
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

void HiveImage::write(const std::vector<RenderedPiece>& pieces, FileReplacement& out) const {
  out.append(front_);
  // Pieces that lie behind one another in the file's bytes go out as one.
  std::string_view run;
  auto piece = pieces.begin();
  for (std::uint32_t record = 0; record < records_.size(); ++record) {
    const bool isRendered = piece != pieces.end() && piece->record == record;
    const std::string_view text =
        isRendered ? std::string_view((piece++)->text) : records_[record].view();
    if (isRendered || ownTexts_.contains(record)) {
      out.append(std::exchange(run, {}));
      out.append(text);
    } else if (!run.empty() && run.data() + run.size() == text.data()) {
      run = {run.data(), run.size() + text.size()};
    } else {
      out.append(std::exchange(run, text));
    }
  }
  out.append(run);
  for (; piece != pieces.end(); ++piece) out.append(piece->text);
}

void HiveImage::adopt(std::vector<RenderedPiece> pieces, const FileStamp& stamp,
                      FileDescriptor descriptor) {
  for (RenderedPiece& piece : pieces) {
    values_.erase(piece.key);
    if (piece.record == records_.size()) appendRecord(piece.key, nullptr, 0);
    const std::string& own = ownTexts_[piece.record] = std::move(piece.text);
    records_[piece.record].text = own.data();
    records_[piece.record].length = static_cast<std::uint32_t>(own.size());
  }
  file_.stamp = stamp;
  file_.descriptor = std::move(descriptor);
}

}  // namespace torvane::posix
