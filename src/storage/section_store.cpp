// The lines of an INI file's section, and what reading and writing make of them.

#include <algorithm>

#include "platform/extras.h"
#include "platform/winapi.h"
#include "storage/clsRegistry.h"
#include "storage/paths.h"
#include "storage/raised_error.h"
#include "storage/value_store.h"

namespace torvane {
namespace {

constexpr TextView kBlanks = u" \t";
/// What reading a value gives at most, as clsIni does.
constexpr std::size_t kLongestValue = 254;

// The lines of the section, each closed by a NUL.
Text SectionLines(const Text& file, const Text& section) {
  constexpr DWORD kMostUnits = 1U << 28U;
  for (DWORD size = 1U << 15U;; size *= 4) {
    Text buffer(size, u'\0');
    const DWORD copied =
        GetPrivateProfileSectionW(Wide(section), WideBuffer(buffer), size, Wide(file));
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

bool IsInCodePage(const Text& text) {
  return FromAnsi(ToAnsi(text)) == text;
}

}  // namespace

SectionStore::SectionStore(const Text& file, Text section)
    : file_(IniFileInUse(file)), section_(std::move(section)) {}

StorePicture SectionStore::Read() const {
  StorePicture picture;
  const Text lines = SectionLines(file_, section_);
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = std::min(lines.find(u'\0', begin), lines.size());
    const TextView line = TextView(lines).substr(begin, end - begin);
    const auto equals = line.find(u'=');
    if (equals != TextView::npos) picture.values.push_back(LineValue(line, equals));
    begin = end + 1;
  }
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

// A file in the code page has no place for other characters. Whether it is one can be seen where it
// holds such a character already.
bool SectionStore::Takes(const Text& text, const StoredValue& stored) const {
  return IsInCodePage(text) || !IsInCodePage(TextOfBytes(stored.bytes));
}

Text SectionStore::Identity() const {
  return file_ + u" [" + section_ + u"]";
}

void SectionStore::Write(const char16_t* key, const char16_t* text) const {
  if (WritePrivateProfileStringW(Wide(section_), key ? Wide(key) : nullptr,
                                 text ? Wide(text) : nullptr, Wide(file_)) != FALSE) {
    return;
  }
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
