// A slot stands for a value; slots are never moved, so that their order is the file's. An erased
// slot stays as a mark that the value's lines are to be left out, and a value that is set again
// after that gets a new slot, at the end, as in the real registry. Data is kept as the line that
// stands, or will stand, in the file, and is decoded when it is asked for.
#include "platform/posix/key_values.h"

#include <algorithm>

namespace torvane::posix {
namespace {

constexpr std::uint32_t kFree = 0xFFFFFFFF;
constexpr std::uint32_t kErased = 0xFFFFFFFE;
constexpr std::string_view kTimeOption = "#time=";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

/// What stands behind the option's lead; nothing for another option.
std::optional<std::string_view> OptionText(const HiveLine& line, std::string_view lead) {
  const std::string_view text = Trimmed(line.text);
  if (line.kind != HiveLine::Kind::Option || !text.starts_with(lead)) return std::nullopt;
  return text.substr(lead.size());
}

/// Appends a line with another text in the place of `part`, which is a piece of it.
void AppendReplacing(std::string& out, std::string_view line, std::string_view part,
                     std::string_view by) {
  const auto before = static_cast<std::size_t>(part.data() - line.data());
  out.append(line.substr(0, before)).append(by).append(line.substr(before + part.size()));
}

/// Appends a key or option line; where it holds the key's time, with a new one.
void AppendWithTime(std::string& out, const HiveLine& line, std::uint64_t time) {
  if (line.kind == HiveLine::Kind::Key && !line.rest.empty()) {
    AppendReplacing(out, line.text, line.rest, std::to_string(SecondsFromTime(time)));
  } else if (const auto digits = OptionText(line, kTimeOption)) {
    AppendReplacing(out, line.text, *digits, TimeDigits(time));
  } else {
    out.append(line.text);
  }
}

}  // namespace

KeyValues::KeyValues(std::vector<std::string_view> texts) : texts_(std::move(texts)) {
  for (const std::string_view text : texts_) {
    LineScanner scanner(text);
    HiveLine line;
    while (scanner.next(line))
      if (line.kind == HiveLine::Kind::Value && line.problem == nullptr) addFromFile(line);
  }
  fileSlots_ = slots_.size();
}

/// A name that stands there twice is one value: the place of the first, the data of the last.
void KeyValues::addFromFile(const HiveLine& line) {
  const std::uint32_t hash = HashName(line.name);
  const std::size_t known = position(hash, line.name);
  if (!index_.empty() && index_[known] < kErased) {
    Slot& slot = slots_[index_[known]];
    slot.line = line.text;
    slot.data = line.rest;
    lineSlots_.push_back(index_[known]);
    return;
  }
  const auto slot = static_cast<std::uint32_t>(slots_.size());
  slots_.push_back({line.text, line.name, line.rest, hash});
  lineSlots_.push_back(slot);
  ++live_;
  addToIndex(slot);
}

/// Where in the index a name stands, or the free place that ends the search for it.
template <typename Name>
std::size_t KeyValues::position(std::uint32_t hash, Name name) const {
  if (index_.empty()) return 0;
  const std::size_t mask = index_.size() - 1;
  std::size_t at = hash & mask;
  for (; index_[at] != kFree; at = (at + 1) & mask) {
    if (index_[at] == kErased) continue;
    const Slot& slot = slots_[index_[at]];
    if (slot.hash == hash && SameName(slot.name, name)) break;
  }
  return at;
}

void KeyValues::addToIndex(std::uint32_t slot) {
  if ((indexUsed_ + 1) * 3 >= index_.size() * 2) {
    rebuildIndex();  // takes the new slot in as well
    return;
  }
  const std::size_t mask = index_.size() - 1;
  std::size_t at = slots_[slot].hash & mask;
  while (index_[at] < kErased) at = (at + 1) & mask;
  if (index_[at] == kFree) ++indexUsed_;
  index_[at] = slot;
}

void KeyValues::rebuildIndex() {
  // By the erased slots too: passing over them here must stay rare.
  std::size_t size = 16;
  while (size < live_ * 3 + slots_.size() / 4) size *= 2;
  index_.assign(size, kFree);
  indexUsed_ = live_;
  for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
    if (!slots_[slot].alive) continue;
    std::size_t at = slots_[slot].hash & (size - 1);
    while (index_[at] != kFree) at = (at + 1) & (size - 1);
    index_[at] = static_cast<std::uint32_t>(slot);
  }
}

std::optional<KeyValue> KeyValues::find(std::u16string_view name) const {
  if (index_.empty()) return std::nullopt;
  const std::uint32_t slot = index_[position(HashName(name), name)];
  if (slot >= kErased) return std::nullopt;
  return KeyValue{slots_[slot].name, slots_[slot].data};
}

std::optional<KeyValue> KeyValues::at(std::size_t index) const {
  if (index >= live_) return std::nullopt;
  while (cursor_.before > index)
    if (slots_[--cursor_.slot].alive) --cursor_.before;
  while (cursor_.before < index || !slots_[cursor_.slot].alive)
    if (slots_[cursor_.slot++].alive) ++cursor_.before;
  return KeyValue{slots_[cursor_.slot].name, slots_[cursor_.slot].data};
}

void KeyValues::setOwnLine(Slot& slot, std::u16string_view name, const ValueData& data) {
  if (slot.own < 0) {
    slot.own = static_cast<std::int32_t>(ownLines_.size());
    ownLines_.emplace_back();
  }
  ValueLine& own = ownLines_[static_cast<std::size_t>(slot.own)];
  own = WriteValueLine(name, data);
  slot.line = own.text;
  slot.name = own.name();
  slot.data = own.data();
  slot.changed = true;
}

void KeyValues::set(std::u16string_view name, const ValueData& data) {
  const std::uint32_t hash = HashName(name);
  changed_ = true;
  if (!index_.empty()) {
    const std::uint32_t known = index_[position(hash, name)];
    if (known < kErased) {
      // The name keeps the letters that it was first given.
      Slot& slot = slots_[known];
      setOwnLine(slot, DecodeText(slot.name), data);
      return;
    }
  }
  const auto added = static_cast<std::uint32_t>(slots_.size());
  Slot& slot = slots_.emplace_back();
  slot.hash = hash;
  setOwnLine(slot, name, data);
  ++live_;
  addToIndex(added);
}

bool KeyValues::erase(std::u16string_view name) {
  if (index_.empty()) return false;
  const std::size_t at = position(HashName(name), name);
  const std::uint32_t found = index_[at];
  if (found >= kErased) return false;
  index_[at] = kErased;
  Slot& slot = slots_[found];
  slot.alive = false;
  slot.changed = true;
  changed_ = true;
  --live_;
  if (found < cursor_.slot) --cursor_.before;
  return true;
}

std::size_t KeyValues::longestName() const {
  std::size_t longest = 0;
  for (const Slot& slot : slots_)
    if (slot.alive) longest = std::max(longest, CountUnits(slot.name));
  return longest;
}

std::size_t KeyValues::longestData() const {
  std::size_t longest = 0;
  for (const Slot& slot : slots_)
    if (slot.alive) longest = std::max(longest, DataSize(slot.data));
  return longest;
}

std::u16string KeyValues::className() const {
  for (const std::string_view text : texts_) {
    LineScanner scanner(text);
    HiveLine line;
    while (scanner.next(line))
      if (line.text.starts_with(kClassOption)) return DecodeText(ClassText(line.text));
  }
  return {};
}

std::uint64_t KeyValues::time() const {
  std::uint64_t time = 0;
  for (const std::string_view text : texts_) {
    LineScanner scanner(text);
    HiveLine line;
    while (scanner.next(line)) {
      if (line.kind == HiveLine::Kind::Key) time = TimeFromSeconds(line.rest);
      if (const auto digits = OptionText(line, kTimeOption)) time = ParseTime(*digits);
    }
  }
  return time;
}

bool KeyValues::hasNewValues() const {
  return std::any_of(slots_.begin(), slots_.end(),
                     [](const Slot& slot) { return slot.alive && slot.changed; });
}

void KeyValues::replayOnto(KeyValues& other) const {
  for (const Slot& slot : slots_)
    if (slot.changed && !slot.alive) other.erase(DecodeText(slot.name));
  for (const Slot& slot : slots_)
    if (slot.changed && slot.alive) other.set(DecodeText(slot.name), DecodeData(slot.data));
  other.touch();
}

std::string KeyValues::newLines() const {
  std::string lines;
  for (std::size_t slot = fileSlots_; slot < slots_.size(); ++slot)
    if (slots_[slot].alive) lines += slots_[slot].line;
  return lines;
}

std::string KeyValues::renderNew(std::string_view path, std::uint64_t time) const {
  std::string out = "\n[";
  out.append(path).append("] ").append(std::to_string(SecondsFromTime(time))).append("\n");
  out.append(kTimeOption).append(TimeDigits(time)).append("\n");
  return out + newLines();
}

std::string KeyValues::render(std::string_view path, std::uint64_t time) const {
  if (texts_.empty()) return renderNew(path, time);
  std::string out;
  std::string added;      // of a key that stands in the file twice, which becomes one
  std::size_t addAt = 0;  // behind the last value, or the options where there is none
  std::size_t valueLine = 0;
  std::vector<bool> written(fileSlots_, false);
  for (const std::string_view text : texts_) {
    const bool isFirst = text.data() == texts_.front().data();
    std::string& target = isFirst ? out : added;
    LineScanner scanner(text);
    HiveLine line;
    while (scanner.next(line)) {
      if (line.kind == HiveLine::Kind::Value) {
        appendValueLine(target, line, lineSlots_[valueLine++], written);
      } else if (isFirst || line.kind == HiveLine::Kind::Option ||
                 line.kind == HiveLine::Kind::Comment) {
        AppendWithTime(target, line, time);
      }
      const bool isFiller =
          line.kind == HiveLine::Kind::Blank || line.kind == HiveLine::Kind::Comment;
      if (isFirst && !isFiller) addAt = out.size();
    }
  }
  return out.insert(addAt, added + newLines());
}

/// A value line of the file as it stands, or what has been set in its place; a value that stands
/// there twice and was set is written once.
void KeyValues::appendValueLine(std::string& out, const HiveLine& line, std::uint32_t number,
                                std::vector<bool>& written) const {
  const Slot& slot = slots_[number];
  if (!slot.alive) return;
  if (slot.own < 0) {
    out += line.text;
  } else if (!written[number]) {
    out += slot.line;
  }
  written[number] = true;
}

}  // namespace torvane::posix
