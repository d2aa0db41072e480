// Lines are views of the file's bytes; only a changed or new line has bytes of its own. What a line
// means is worked out from its bytes each time, so that no second copy of a name or value can
// differ from what is written.
#include "platform/posix/profile/profile_text.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <span>
#include <system_error>
#include <utility>

#include "platform/posix/disk/earlier_texts.h"
#include "platform/posix/text/code_page.h"
#include "platform/posix/text/letter_case.h"

namespace torvane::posix {
namespace {

constexpr std::u16string_view kBlanks = u" \t\v\f\x1A";
/// What tells the place of a part from its text among the earlier texts.
const std::string kPlaceOf("\0place", 6);

std::u16string_view Trim(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

/// Names compare as Wine's profile calls compare them: letters beyond ASCII have no case there.
std::u16string FoldName(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& unit : folded)
    if (unit < 0x80) unit = FoldCase(unit);
  return folded;
}

enum class LineKind { Blank, Comment, Section, Key };

/// What a line says.
struct Meaning {
  LineKind kind = LineKind::Blank;
  std::u16string_view name;  ///< of the section or key
  std::optional<std::u16string_view> value;
};

Meaning Understand(std::u16string_view line) {
  line = Trim(line.substr(0, line.find_first_of(std::u16string_view(u"\0\r\n", 3))));
  if (line.empty()) return {};
  if (line.front() == u';') return {LineKind::Comment, {}, {}};
  const std::size_t close = line.rfind(u']');
  if (line.front() == u'[' && close != std::u16string_view::npos) {
    return {LineKind::Section, Trim(line.substr(1, close - 1)), {}};
  }
  const std::size_t equals = line.find(u'=');
  if (equals == std::u16string_view::npos) return {LineKind::Key, line, {}};
  return {LineKind::Key, Trim(line.substr(0, equals)), Trim(line.substr(equals + 1))};
}

std::u16string EntryOf(const Meaning& meaning) {
  std::u16string entry(meaning.name);
  if (meaning.value) entry.append(u"=").append(*meaning.value);
  return entry;
}

/// Whether the lines of a section and a key, once written, read as these names and this value.
bool ReadsBack(std::u16string_view section, std::u16string_view key, std::u16string_view value) {
  const std::u16string header = u"[" + std::u16string(section) + u"]";
  const std::u16string line = std::u16string(key) + u"=" + std::u16string(value);
  const Meaning meaning = Understand(line);
  return Understand(header).name == section && meaning.kind == LineKind::Key &&
         meaning.name == key && meaning.value == Trim(value);
}

}  // namespace

ProfileText::ProfileText(std::string bytes) : source_(std::move(bytes)), encoding_(source_) {
  parse();
}

void ProfileText::parse() {
  encoding_ = ProfileEncoding(source_);
  lineEnd_.clear();
  sections_.clear();
  sectionIndex_.clear();
  addSection({}, {});
  std::string_view rest = std::string_view(source_).substr(encoding_.markSize());
  while (!rest.empty()) {
    const std::string_view bytes = takeLine(rest);
    if (lineEnd_.empty()) lineEnd_ = lineEndOf(bytes);
    const std::u16string text = encoding_.decode(bytes);
    const Meaning meaning = Understand(text);
    if (meaning.kind == LineKind::Section) {
      moveBlanks(sections_.back());
      addSection(meaning.name, bytes);
      sections_.back().asRead = bytes;
      continue;
    }
    Section& section = sections_.back();
    section.asRead = {section.asRead.empty() ? bytes.data() : section.asRead.data(),
                      section.asRead.size() + bytes.size()};
    section.lines.push_back({.bytes = bytes, .blank = meaning.kind == LineKind::Blank});
    if (meaning.kind == LineKind::Key) {
      link(section.keys, meaning.name, section.lines, section.lines.size() - 1);
    }
  }
  moveBlanks(sections_.back());
  if (lineEnd_.empty()) lineEnd_ = encoding_.encode(u"\r\n");
}

void ProfileText::addSection(std::u16string_view name, std::string_view header) {
  Section& section = sections_.emplace_back();
  section.name = name;
  section.header = header;
  link(sectionIndex_, name, sections_, sections_.size() - 1);
}

template <typename Entry>
void ProfileText::link(Index& index, std::u16string_view name, std::vector<Entry>& entries,
                       std::size_t added) {
  Chain& chain = index[FoldName(name)];
  if (chain.first == kNone) {
    chain.first = added;
  } else {
    entries[chain.last].nextOfName = added;
  }
  chain.last = added;
}

/// Takes the first entry of a name out of the index and gives its place.
template <typename Entry>
std::size_t ProfileText::unlinkFirst(Index& index, std::u16string_view name,
                                     const std::vector<Entry>& entries) {
  const auto chain = index.find(FoldName(name));
  const std::size_t place = chain->second.first;
  chain->second.first = entries[place].nextOfName;
  if (chain->second.first == kNone) index.erase(chain);
  return place;
}

/// Takes the blank lines at a section's end out of its lines, and with them removed ones.
void ProfileText::moveBlanks(Section& section) {
  auto& lines = section.lines;
  while (!lines.empty() && (lines.back().blank || !lines.back().live)) {
    if (lines.back().live) section.blanks.push_front(lines.back().bytes);
    lines.pop_back();
  }
}

/// The next line with its end, which is CR LF, LF or CR.
std::string_view ProfileText::takeLine(std::string_view& rest) const {
  const std::size_t unit = encoding_.unitSize();
  const auto at = [&](std::size_t i) -> char16_t {
    if (unit == 1) return static_cast<unsigned char>(rest[i]);
    return i + 1 < rest.size() ? encoding_.decode(rest.substr(i, unit))[0] : u'x';
  };
  std::size_t end = 0;
  while (end < rest.size() && at(end) != u'\r' && at(end) != u'\n') end += unit;
  if (end + unit < rest.size() && at(end) == u'\r' && at(end + unit) == u'\n') end += unit;
  const std::string_view line = rest.substr(0, end + unit);
  rest.remove_prefix(line.size());
  return line;
}

std::string_view ProfileText::lineEndOf(std::string_view line) const {
  const std::u16string text = encoding_.decode(line);
  const std::size_t last = text.find_last_not_of(u"\r\n");
  const std::size_t units = text.size() - (last == std::u16string::npos ? 0 : last + 1);
  // A byte left over behind the last unit of a UTF-16 file ends no line.
  const std::size_t size = units * encoding_.unitSize();
  return line.size() % encoding_.unitSize() != 0 ? std::string_view()
                                                 : line.substr(line.size() - size);
}

std::string_view ProfileText::keep(std::string bytes) {
  return made_.emplace_back(std::move(bytes));
}

const ProfileText::Section* ProfileText::find(std::u16string_view name) const {
  const auto chain = sectionIndex_.find(FoldName(Trim(name)));
  return chain == sectionIndex_.end() ? nullptr : &sections_[chain->second.first];
}

ProfileText::Section* ProfileText::find(std::u16string_view name) {
  return const_cast<Section*>(std::as_const(*this).find(name));
}

std::optional<std::u16string> ProfileText::value(std::u16string_view sectionName,
                                                 std::u16string_view key) const {
  const Section* section = find(sectionName);
  if (section == nullptr) return std::nullopt;
  const auto chain = section->keys.find(FoldName(Trim(key)));
  if (chain == section->keys.end()) return std::nullopt;
  const std::u16string line = encoding_.decode(section->lines[chain->second.first].bytes);
  const Meaning meaning = Understand(line);
  if (!meaning.value) return std::nullopt;
  return std::u16string(*meaning.value);
}

std::optional<std::vector<std::u16string>> ProfileText::keys(
    std::u16string_view sectionName) const {
  const Section* section = find(sectionName);
  // The place ahead of all sections is always there, but doesn't count until it holds something.
  if (section == nullptr || (section->header.empty() && section->lines.empty())) {
    return std::nullopt;
  }
  std::vector<std::u16string> names;
  for (const Line& line : section->lines) {
    if (!line.live) continue;
    const std::u16string text = encoding_.decode(line.bytes);
    const Meaning meaning = Understand(text);
    if (meaning.value) names.emplace_back(meaning.name);
  }
  return names;
}

std::vector<std::u16string> ProfileText::entries(std::u16string_view sectionName) const {
  std::vector<std::u16string> entries;
  const Section* section = find(sectionName);
  if (section == nullptr) return entries;
  for (const Line& line : section->lines) {
    if (!line.live) continue;
    const std::u16string text = encoding_.decode(line.bytes);
    const Meaning meaning = Understand(text);
    if (meaning.kind == LineKind::Key) entries.push_back(EntryOf(meaning));
  }
  return entries;
}

std::vector<std::u16string> ProfileText::sections() const {
  std::vector<std::u16string> names;
  for (const Section& section : sections_) {
    if (section.live && !section.name.empty()) names.push_back(section.name);
  }
  return names;
}

void ProfileText::set(std::u16string_view sectionName, std::u16string_view key,
                      std::u16string_view value) {
  sectionName = Trim(sectionName);
  key = Trim(key);
  // What the code page can't hold is neither read nor written as something else.
  if (this->value(sectionName, key) == value) return;
  for (const std::u16string_view text : {sectionName, key, value}) {
    if (!canHold(text)) throw std::system_error(EILSEQ, std::generic_category());
  }
  Section& section = findOrMake(sectionName);
  section.changed = true;
  const auto chain = section.keys.find(FoldName(key));
  if (chain != section.keys.end()) {
    changeLine(section.lines[chain->second.first], value);
  } else {
    appendEntry(section, key, std::u16string(key) + u"=" + std::u16string(value));
  }
  if (!ReadsBack(sectionName, key, value)) parseAnew();
}

void ProfileText::setEntries(std::u16string_view sectionName,
                             const std::vector<std::u16string>& entries) {
  sectionName = Trim(sectionName);
  if (this->entries(sectionName) == entries && contains(sectionName, std::nullopt)) return;
  for (const std::u16string& entry : entries) {
    if (!canHold(entry)) throw std::system_error(EILSEQ, std::generic_category());
  }
  if (!canHold(sectionName)) throw std::system_error(EILSEQ, std::generic_category());
  Section& section = findOrMake(sectionName);
  section.changed = true;
  section.keys.clear();
  std::size_t standing = 0;
  for (std::size_t at = 0; at < section.lines.size(); ++at) {
    Line& line = section.lines[at];
    const std::u16string text = encoding_.decode(line.bytes);
    const Meaning meaning = Understand(text);
    if (!line.live || meaning.kind != LineKind::Key) continue;
    line.nextOfName = kNone;
    line.live = standing < entries.size() && EntryOf(meaning) == entries[standing];
    if (!line.live) continue;
    ++standing;
    link(section.keys, meaning.name, section.lines, at);
  }
  moveBlanks(section);
  for (const std::u16string& entry : std::span(entries).subspan(standing))
    appendEntry(section, Trim(std::u16string_view(entry).substr(0, entry.find(u'='))), entry);
  if (this->entries(sectionName) != entries) parseAnew();
}

/// Where a line end or a bracket in a text has made other lines of it, the file is looked at as a
/// reader will.
void ProfileText::parseAnew() {
  source_ = bytes();
  made_.clear();
  parse();
}

bool ProfileText::isBroken(std::u16string_view sectionName) const {
  const Section* section = find(sectionName);
  if (section == nullptr) return false;
  return std::any_of(section->lines.begin(), section->lines.end(), [&](const Line& line) {
    const std::u16string text = encoding_.decode(line.bytes);
    return line.live && Understand(text).kind == LineKind::Key &&
           encoding_.encode(text) != line.bytes;
  });
}

ProfileText::Section& ProfileText::findOrMake(std::u16string_view name) {
  if (Section* section = find(name)) return *section;
  if (Section* section = revive(name)) return *section;
  // The file's last line is the last one of the last section that still stands.
  for (auto section = sections_.rbegin(); section != sections_.rend(); ++section) {
    if (!section->live) continue;
    section->changed = true;
    if (!section->blanks.empty()) {
      endLine(section->blanks.back());
    } else if (!section->lines.empty()) {
      endLine(section->lines.back().bytes);
    } else if (!section->header.empty()) {
      endLine(section->header);
    } else {
      continue;
    }
    break;
  }
  addSection(name, keep(encoding_.encode(u"[" + std::u16string(name) + u"]") + lineEnd_));
  return sections_.back();
}

/// A section that was removed and is made anew comes back empty where it was; null for none.
ProfileText::Section* ProfileText::revive(std::u16string_view name) {
  const std::u16string folded = FoldName(Trim(name));
  const auto section = std::find_if(sections_.begin(), sections_.end(), [&](const Section& dead) {
    return !dead.live && !dead.header.empty() && FoldName(dead.name) == folded;
  });
  if (section == sections_.end()) return nullptr;
  section->live = section->changed = section->remade = true;
  section->nextOfName = kNone;
  section->keys.clear();
  for (Line& line : section->lines) line.live = false;
  endLine(section->header);
  link(sectionIndex_, section->name, sections_,
       static_cast<std::size_t>(section - sections_.begin()));
  return &*section;
}

void ProfileText::endLine(std::string_view& line) {
  if (!lineEndOf(line).empty()) return;
  std::string bytes(line);
  // Half a unit at the end of a UTF-16 file means nothing, but would shift all that comes behind.
  if (bytes.size() % encoding_.unitSize() != 0) bytes.pop_back();
  line = keep(bytes + lineEnd_);
}

void ProfileText::appendEntry(Section& section, std::u16string_view key,
                              std::u16string_view entry) {
  std::string bytes = encoding_.encode(entry);
  std::string_view* before = section.lines.empty() ? &section.header : &section.lines.back().bytes;
  if (!before->empty()) {
    endLine(*before);
    bytes += lineEndOf(*before);
  } else {
    bytes += lineEnd_;
  }
  section.lines.push_back({.bytes = keep(std::move(bytes))});
  link(section.keys, key, section.lines, section.lines.size() - 1);
}

void ProfileText::changeLine(Line& line, std::u16string_view value) {
  // The bytes up to the value stay as they are. An '=' is no part of a character in any code page.
  const bool isWide = encoding_.unitSize() != 1;
  const std::string_view lineEnd = lineEndOf(line.bytes);
  std::string_view front = line.bytes.substr(0, line.bytes.size() - lineEnd.size());
  std::u16string text = encoding_.decode(front);
  // A reader sees nothing behind a NUL, which is no part of another character either.
  if (const std::size_t nul = text.find(u'\0'); nul != std::u16string::npos) {
    text.resize(nul);
    front = front.substr(0, isWide ? 2 * nul : front.find('\0'));
  }
  const std::size_t equals = text.find(u'=');
  std::string bytes;
  if (equals == std::u16string::npos) {
    bytes = std::string(front) + encoding_.encode(u"=");
  } else if (isWide) {
    const std::size_t blanks = text.find_first_not_of(kBlanks, equals + 1);
    bytes = front.substr(0, 2 * (blanks == std::u16string::npos ? equals + 1 : blanks));
  } else {
    const std::size_t equalsByte = front.find('=');
    const std::size_t blanks = front.find_first_not_of(" \t", equalsByte + 1);
    bytes = front.substr(0, blanks == std::string_view::npos ? equalsByte + 1 : blanks);
  }
  bytes += encoding_.encode(value);
  bytes += lineEnd;
  line.bytes = keep(std::move(bytes));
}

bool ProfileText::contains(std::u16string_view sectionName,
                           const std::optional<std::u16string>& key) const {
  const Section* section = find(sectionName);
  if (section == nullptr) return false;
  return key ? section->keys.count(FoldName(Trim(*key))) != 0 : !section->header.empty();
}

void ProfileText::removeKey(std::u16string_view sectionName, std::u16string_view key) {
  if (!contains(sectionName, std::u16string(key))) return;
  Section& section = *find(sectionName);
  section.changed = true;
  const std::size_t line = unlinkFirst(section.keys, Trim(key), section.lines);
  section.lines[line].live = false;
  moveBlanks(section);
}

void ProfileText::removeSection(std::u16string_view sectionName) {
  // What stands ahead of all sections has no name to be removed by.
  if (!contains(sectionName, std::nullopt)) return;
  sections_[unlinkFirst(sectionIndex_, Trim(sectionName), sections_)].live = false;
}

void ProfileText::addSaid(std::string_view bytes, Said& said) const {
  const std::u16string line = encoding_.decode(bytes);
  const Meaning meaning = Understand(line);
  if (meaning.kind == LineKind::Comment) said.others.emplace_back(Trim(line));
  if (meaning.kind != LineKind::Key) return;
  (meaning.value ? said.keys : said.others).push_back(EntryOf(meaning));
}

ProfileText::Said ProfileText::saidBy(const Section& section) const {
  Said said;
  for (const Line& line : section.lines)
    if (line.live) addSaid(line.bytes, said);
  return said;
}

ProfileText::Said ProfileText::saidBy(std::string_view text) const {
  Said said;
  while (!text.empty()) addSaid(takeLine(text), said);
  return said;
}

std::string ProfileText::earlierName(const Section& section, const std::string& file) {
  return file + '\0' + ToUtf8(FoldName(section.name));
}

/// The text that the section had when it said what it says now; nothing where it never did.
std::optional<std::string_view> ProfileText::earlierText(const Section& section,
                                                         const std::string& file) const {
  const Said now = saidBy(section);
  const bool isNew = section.asRead.empty() || section.remade;
  const auto isFit = [&](std::string_view text) {
    const Said then = saidBy(text);
    return then.keys == now.keys && (isNew || then.others == now.others);
  };
  if (!section.asRead.empty() && isFit(section.asRead)) return section.asRead;
  if (file.empty()) return std::nullopt;
  const std::string* text = EarlierTexts::Instance().find(earlierName(section, file), isFit);
  return text != nullptr ? std::optional<std::string_view>(*text) : std::nullopt;
}

void ProfileText::keepEarlier(const std::string& file) const {
  EarlierTexts& texts = EarlierTexts::Instance();
  for (const Section& section : sections_) {
    if ((!section.changed && section.live) || section.asRead.empty()) continue;
    const std::string name = earlierName(section, file);
    texts.keep(name, std::string(section.asRead));
    if (!section.live) texts.keep(name + kPlaceOf, namesAhead(section));
  }
}

/// The names of the sections ahead of one, the nearest first, each closed by a NUL.
std::string ProfileText::namesAhead(const Section& section) const {
  std::string names;
  for (auto ahead = std::make_reverse_iterator(sections_.begin() + (&section - sections_.data()));
       ahead != sections_.rend(); ++ahead) {
    if (ahead->live) names += ToUtf8(FoldName(ahead->name)) + '\0';
  }
  return names;
}

/// Where among sections one goes that was removed and has come back: behind the nearest of those
/// that it stood behind.
std::size_t ProfileText::earlierPlace(const Section& section, const std::string& file,
                                      const std::vector<const Section*>& sections) const {
  const std::string* names = EarlierTexts::Instance().find(earlierName(section, file) + kPlaceOf,
                                                           [](const std::string&) { return true; });
  if (names == nullptr) return sections.size();
  for (std::string_view rest = *names; !rest.empty(); rest.remove_prefix(rest.find('\0') + 1)) {
    // Of equal names as many stand ahead as are in the rest.
    const std::string_view name = rest.substr(0, rest.find('\0'));
    std::size_t left = 0;
    for (std::string_view more = rest; !more.empty(); more.remove_prefix(more.find('\0') + 1))
      left += more.substr(0, more.find('\0')) == name ? 1 : 0;
    std::size_t place = 0;
    for (std::size_t n = 0; n < sections.size() && left > 0; ++n) {
      if (ToUtf8(FoldName(sections[n]->name)) != name) continue;
      place = n + 1;
      --left;
    }
    if (place > 0) return place;
  }
  return sections.size();
}

/// The sections that stand, in the order in which they are written.
std::vector<const ProfileText::Section*> ProfileText::inOrder(const std::string& file) const {
  std::vector<const Section*> sections;
  for (const Section& section : sections_) {
    if (!section.live) continue;
    const bool isNew = !section.header.empty() && section.asRead.empty();
    const std::size_t place = isNew ? earlierPlace(section, file, sections) : sections.size();
    sections.insert(sections.begin() + static_cast<std::ptrdiff_t>(place), &section);
  }
  return sections;
}

std::string ProfileText::bytes(const std::string& file) const {
  std::string result = source_.substr(0, encoding_.markSize());
  result.reserve(source_.size());
  bool isEnded = true;
  // An earlier text may have been the file's last, which need not have a line end.
  const auto endLast = [&] {
    if (isEnded) return;
    if (result.size() % encoding_.unitSize() != 0) result.pop_back();
    result += lineEnd_;
    isEnded = true;
  };
  for (const Section* const standing : inOrder(file)) {
    const Section& section = *standing;
    const auto earlier = section.changed ? earlierText(section, file) : std::nullopt;
    if (earlier) {
      endLast();
      result += *earlier;
      isEnded = !lineEndOf(*earlier).empty();
      continue;
    }
    if (!section.header.empty()) endLast();
    result += section.header;
    for (const Line& line : section.lines) {
      if (line.live) result += line.bytes;
    }
    for (const std::string_view blank : section.blanks) result += blank;
  }
  return result;
}

}  // namespace torvane::posix
