// The lines of an INI file's section, and what reading and writing make of them.

#include <algorithm>
#include <set>

#include "platform/extras.h"
#include "platform/winapi.h"
#include "storage/clsRegistry.h"
#include "storage/names.h"
#include "storage/paths.h"
#include "storage/raised_error.h"
#include "storage/value_store.h"

namespace torvane {
namespace {

constexpr TextView kBlanks = u" \t";
/// What reading a value gives at most, as clsIni does.
constexpr std::size_t kLongestValue = 254;

constexpr std::int32_t kHarmErrorNumber = 26005;

// A list that a profile call gives, each text closed by a NUL. `call` fills a buffer.
template <class Call>
Text WholeList(Call call) {
  constexpr DWORD kMostUnits = 1U << 28U;
  for (DWORD size = 1U << 15U;; size *= 4) {
    Text buffer(size, u'\0');
    const DWORD copied = call(WideBuffer(buffer), size);
    // A list that fills the buffer but for two NULs has been cut.
    if (copied < size - 2 || size >= kMostUnits) {
      buffer.resize(copied);
      return buffer;
    }
  }
}

TextView Trimmed(TextView text) {
  const auto begin = text.find_first_not_of(kBlanks);
  if (begin == TextView::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

StoredValue LineValue(TextView line, std::size_t equals) {
  return {Text(Trimmed(line.substr(0, equals))), kTextType,
          BytesOfText(Trimmed(line.substr(equals + 1)))};
}

// One pair of quotes around a value is dropped on reading.
TextView Unquoted(TextView value) {
  if (value.size() < 2 || value.front() != value.back()) return value;
  if (value.front() != u'"' && value.front() != u'\'') return value;
  return value.substr(1, value.size() - 2);
}

// Calls `take` with each text of a list.
template <class Take>
void ForEachText(const Text& list, Take take) {
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = std::min(list.find(u'\0', begin), list.size());
    take(TextView(list).substr(begin, end - begin));
    begin = end + 1;
  }
}

Text SectionLines(const Text& file, const Text& section) {
  return WholeList([&](WCHAR* buffer, DWORD size) {
    return GetPrivateProfileSectionW(Wide(section), buffer, size, Wide(file));
  });
}

Text LineOf(const StoredValue& value) {
  return value.name + u"=" + TextOfBytes(value.bytes);
}

// The profile calls know case in ASCII only.
bool HasEqualNames(const StorePicture& picture) {
  std::set<Text> names;
  return !std::all_of(picture.values.begin(), picture.values.end(), [&](const StoredValue& value) {
    Text name = value.name;
    for (char16_t& unit : name) {
      if (unit >= u'A' && unit <= u'Z') unit |= 0x20U;
    }
    return names.insert(std::move(name)).second;
  });
}

bool IsInCodePage(const Text& text) {
  return FromAnsi(ToAnsi(text)) == text;
}

}  // namespace

SectionStore::SectionStore(const Text& file, Text section)
    : file_(IniFileInUse(file)), section_(std::move(section)) {}

StorePicture SectionStore::Read() const {
  StorePicture picture;
  // What isn't to be read for its size is not for the system's calls either, which would.
  if (!ProfileProblem(file_).empty()) return picture;
  ForEachText(SectionLines(file_, section_), [&](TextView line) {
    const auto equals = line.find(u'=');
    if (equals != TextView::npos) picture.values.push_back(LineValue(line, equals));
  });
  picture.exists = !picture.values.empty();
  return picture;
}

Variant SectionStore::ValueOf(const StoredValue& stored) const {
  const Text text = TextOfBytes(stored.bytes);
  return Text(Unquoted(Trimmed(text)).substr(0, kLongestValue));
}

bool SectionStore::ReadsWhole(const StoredValue& stored) const {
  const Text text = TextOfBytes(stored.bytes);
  return Unquoted(Trimmed(text)).size() <= kLongestValue;
}

StoredValue SectionStore::ValueFor(const Text& name, const Text& text) const {
  Text written = text;
  std::erase(written, u'\0');
  return {name, kTextType, BytesOfText(written)};
}

// What the code page holds every file holds; the file itself is asked for the rest.
bool SectionStore::Takes(const Text& text) const {
  return IsInCodePage(text) || HarmToProfile(file_, text) == ProfileHarm::None;
}

Text SectionStore::Identity() const {
  return file_ + u" [" + section_ + u"]";
}

Text SectionStore::Problem() const {
  const Text problem = ProfileProblem(file_);
  return problem.empty() ? problem : u"The file '" + file_ + u"' " + problem + u".";
}

void SectionStore::Refuse(const Text& why) const {
  throw RaisedError(kHarmErrorNumber, ExecutableBaseName(),
                    u"The file '" + file_ + u"' " + why + u" Nothing has been changed.");
}

void SectionStore::CheckHolds(const StorePicture& to) const {
  Text texts = section_;
  for (const StoredValue& value : to.values) texts += u"\n" + LineOf(value);
  switch (HarmToProfile(file_, texts)) {
    case ProfileHarm::UnknownMark:
      Refuse(u"begins with a mark that Windows doesn't know when it writes.");
    case ProfileHarm::OutsidePage:
      Refuse(u"is in an encoding that hasn't all characters of what is to be written.");
    case ProfileHarm::None:
      break;
  }
  if (HasBrokenText(file_, section_)) {
    Refuse(u"holds bytes that are no characters, and that would become others.");
  }
}

// The calls that go by a name mean the first line of that name, and the first section.
bool SectionStore::ReplaceAtOnce(const StorePicture& from, const StorePicture& to,
                                 Clearing clearing) const {
  const bool isWhole = clearing == Clearing::Whole;
  const bool standsTwice = isWhole && StandsTwice();
  if (!standsTwice && !HasEqualNames(to) && (isWhole || !HasEqualNames(from))) return false;
  if (isWhole && !standsTwice) DeleteAll();
  WriteLines(to);
  return true;
}

bool SectionStore::StandsTwice() const {
  std::size_t count = 0;
  const Text names = WholeList([&](WCHAR* buffer, DWORD size) {
    return GetPrivateProfileStringW(nullptr, nullptr, Wide(u""), buffer, size, Wide(file_));
  });
  ForEachText(names, [&](TextView name) { count += SameName(name, section_) ? 1 : 0; });
  return count > 1;
}

void SectionStore::WriteLines(const StorePicture& picture) const {
  Text lines;
  ForEachText(SectionLines(file_, section_), [&](TextView line) {
    if (line.find(u'=') == TextView::npos) lines.append(line).push_back(u'\0');
  });
  for (const StoredValue& value : picture.values) lines += LineOf(value) + u'\0';
  if (WritePrivateProfileSectionW(Wide(section_), Wide(lines), Wide(file_)) == FALSE) FailToWrite();
}

void SectionStore::Write(const char16_t* key, const char16_t* text) const {
  if (WritePrivateProfileStringW(Wide(section_), key ? Wide(key) : nullptr,
                                 text ? Wide(text) : nullptr, Wide(file_)) != FALSE) {
    return;
  }
  FailToWrite();
}

void SectionStore::FailToWrite() const {
  throw RaisedError(static_cast<std::int32_t>(GetLastError()), ExecutableBaseName(),
                    u"The file '" + file_ + u"' could not be written.");
}

void SectionStore::Delete(const StoredValue& value) const {
  Write(value.name.c_str(), nullptr);
}

void SectionStore::Set(const StoredValue& value) const {
  Write(value.name.c_str(), TextOfBytes(value.bytes).c_str());
}

void SectionStore::DeleteAll() const {
  Write(nullptr, nullptr);
}

}  // namespace torvane
