// A slot stands for a value; slots are never moved, so that their order is the file's. An erased
// slot stays as a mark that the value's lines are to be left out, and a value that is set again
// after that gets a new slot, at the end, as in the real registry. Data is kept as the line that
// stands, or will stand, in the file, and is decoded when it is asked for.
#include "platform/posix/registry/key_values.h"

#include <algorithm>

namespace torvane::posix {
namespace {

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

/// Ends the last line, which in a file need not have an end, before another follows.
void EndLine(std::string& lines) {
  if (!lines.empty() && lines.back() != '\n') lines += '\n';
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

/// Whether data that is written in two ways is the same.
bool SameData(std::string_view left, std::string_view right) {
  if (left == right) return true;
  const ValueData leftData = DecodeData(left);
  const ValueData rightData = DecodeData(right);
  return leftData.type == rightData.type && leftData.bytes == rightData.bytes;
}

/// Whether two values are the same to the letter of their names.
bool SameValue(const KeyValue& left, const KeyValue& right) {
  return (left.name == right.name || left.decodedName() == right.decodedName()) &&
         SameData(left.data, right.data);
}

/// The lines of a key's pieces that a reader may mean: options, but for the time, and comments.
std::vector<std::string_view> OtherLines(const std::vector<std::string_view>& texts) {
  std::vector<std::string_view> lines;
  for (const std::string_view text : texts) {
    LineScanner scanner(text);
    HiveLine line;
    while (scanner.next(line)) {
      const bool isOther = line.kind == HiveLine::Kind::Option
                               ? !OptionText(line, kTimeOption)
                               : line.kind == HiveLine::Kind::Comment;
      if (isOther) lines.push_back(Trimmed(line.text));
    }
  }
  return lines;
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
  const std::uint32_t known = findSlot(hash, line.name);
  if (known != NameIndex::kNone) {
    Slot& slot = slots_[known];
    slot.line = line.text;
    slot.data = line.rest;
    lineSlots_.push_back(known);
    return;
  }
  const auto slot = static_cast<std::uint32_t>(slots_.size());
  slots_.push_back({line.text, line.name, line.rest});
  lineSlots_.push_back(slot);
  ++live_;
  index_.add(hash, slot);
}

template <typename Name>
std::uint32_t KeyValues::findSlot(std::uint32_t hash, Name name) const {
  return index_.find(hash, [&](std::uint32_t slot) { return SameName(slots_[slot].name, name); });
}

std::optional<KeyValue> KeyValues::find(std::u16string_view name) const {
  const std::uint32_t slot = findSlot(HashName(name), name);
  if (slot == NameIndex::kNone) return std::nullopt;
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
  if (const std::uint32_t known = findSlot(hash, name); known != NameIndex::kNone) {
    // The name keeps the letters that it was first given.
    Slot& slot = slots_[known];
    setOwnLine(slot, DecodeText(slot.name), data);
    return;
  }
  const auto added = static_cast<std::uint32_t>(slots_.size());
  Slot& slot = slots_.emplace_back();
  setOwnLine(slot, name, data);
  ++live_;
  index_.add(hash, added);
}

bool KeyValues::erase(std::u16string_view name) {
  const std::uint32_t hash = HashName(name);
  const std::uint32_t found = findSlot(hash, name);
  if (found == NameIndex::kNone) return false;
  index_.erase(hash, found);
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
      if (line.rest.starts_with(kClassOption)) return DecodeText(ClassText(line.rest));
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

bool KeyValues::isAsRead() const {
  if (texts_.empty() || live_ != fileSlots_) return false;
  std::vector<KeyValue> read(fileSlots_);
  std::size_t valueLine = 0;
  for (const std::string_view text : texts_) {
    LineScanner scanner(text);
    HiveLine line;
    while (scanner.next(line)) {
      if (line.kind != HiveLine::Kind::Value || line.problem != nullptr) continue;
      KeyValue& value = read[lineSlots_[valueLine++]];
      if (value.name.data() == nullptr) value.name = line.name;
      value.data = line.rest;
    }
  }
  auto value = read.begin();
  return std::all_of(slots_.begin(), slots_.end(), [&](const Slot& slot) {
    return !slot.alive || SameValue({slot.name, slot.data}, *value++);
  });
}

bool KeyValues::fits(std::string_view text) const {
  auto slot = slots_.begin();
  const auto skipErased = [&] {
    slot = std::find_if(slot, slots_.end(), [](const Slot& at) { return at.alive; });
  };
  LineScanner scanner(text);
  HiveLine line;
  while (scanner.next(line)) {
    if (line.kind != HiveLine::Kind::Value) continue;
    skipErased();
    if (slot == slots_.end() || !SameValue({slot->name, slot->data}, {line.name, line.rest}))
      return false;
    ++slot;
  }
  skipErased();
  return slot == slots_.end() && OtherLines(texts_) == OtherLines({text});
}

std::string KeyValues::WithTime(std::string_view text, std::uint64_t time) {
  std::string out;
  LineScanner scanner(text);
  HiveLine line;
  while (scanner.next(line)) {
    if (line.kind == HiveLine::Kind::Key || line.kind == HiveLine::Kind::Option) {
      AppendWithTime(out, line, time);
    } else {
      out += line.text;
    }
  }
  return out;
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
      EndLine(added);
      const bool isFiller =
          line.kind == HiveLine::Kind::Blank || line.kind == HiveLine::Kind::Comment;
      if (isFirst && !isFiller) addAt = out.size();
    }
  }
  added += newLines();
  if (!added.empty() && addAt == out.size()) {
    EndLine(out);
    addAt = out.size();
  }
  return out.insert(addAt, added);
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
