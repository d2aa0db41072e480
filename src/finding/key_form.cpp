#include "finding/key_form.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "finding/name_words.h"
#include "platform/winapi.h"
#include "storage/clsRegistry.h"

namespace torvane {
namespace {

constexpr TextView kDigits = u"0123456789";
constexpr std::size_t kMostDigits = 9;
constexpr std::size_t kLongestPrefix = 255;

bool IsDrive(char16_t unit) {
  return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

bool BeginsWithDrive(TextView text) {
  return text.size() >= 3 && IsDrive(text[0]) && text[1] == u':' && text[2] == u'\\';
}

// The server and the share have names.
bool BeginsWithServer(TextView text) {
  if (!text.starts_with(u"\\\\")) return false;
  const auto share = text.find(u'\\', 2);
  return share != TextView::npos && share > 2 && share + 1 < text.size() &&
         text[share + 1] != u'\\';
}

// The text of a value that has one, as far as a list can hold it.
std::optional<Text> StoredText(const StoredValue& value) {
  const auto type = static_cast<DWORD>(value.type);
  if ((type != REG_SZ && type != REG_EXPAND_SZ) || value.bytes.size() % sizeof(char16_t) != 0) {
    return std::nullopt;
  }
  Text text = TextOfBytes(value.bytes);
  if (text.ends_with(u'\0')) text.pop_back();
  return text;
}

bool IsEntry(const StoredValue& value) {
  const auto text = StoredText(value);
  return text && IsAbsolutePath(*text) && !TakeApart(value.name).digits.empty();
}

bool Counts(const StoredValue& value, std::size_t entries, TextView prefix) {
  if (!SaysCount(value.name, prefix)) return false;
  const auto count = static_cast<std::int32_t>(entries);
  if (value.type == kNumberType) return value.bytes == BytesOfNumber(count);
  return value.type == kTextType && StoredText(value) == Decimal(count) &&
         value.bytes.size() == (Decimal(count).size() + 1) * sizeof(char16_t);
}

// The names whose numbers begin with the smallest of `digits`.
std::optional<EntryNames> NamesFrom(TextView prefix, std::vector<TextView> digits) {
  // Two digits or one, the first number is a 0 or a 1.
  for (const TextView first : {u"0", u"1", u"00", u"01"}) {
    if (std::find(digits.begin(), digits.end(), first) == digits.end()) continue;
    EntryNames names{EntryNames::Kind::Numbered, Text(prefix), first.back() - u'0', first.size()};
    std::sort(digits.begin(), digits.end());
    std::vector<Text> wanted;
    for (const Text& name : names.First(digits.size()))
      wanted.push_back(name.substr(prefix.size()));
    std::sort(wanted.begin(), wanted.end());
    if (std::equal(wanted.begin(), wanted.end(), digits.begin(), digits.end())) return names;
  }
  return std::nullopt;
}

}  // namespace

NumberedName TakeApart(TextView name) {
  const auto last = name.find_last_not_of(kDigits);
  const std::size_t split = last == TextView::npos ? 0 : last + 1;
  const TextView digits = name.substr(split);
  if (digits.size() > kMostDigits) return {name, {}};
  return {name.substr(0, split), digits};
}

bool IsAbsolutePath(TextView text) {
  const bool hasDrive = BeginsWithDrive(text);
  if (!hasDrive && !BeginsWithServer(text)) return false;
  const TextView rest = text.substr(2);
  if (rest.find_first_of(u":*?\"<>|/") != TextView::npos) return false;
  if (std::any_of(rest.begin(), rest.end(), [](char16_t unit) { return unit < u' '; }))
    return false;
  // A search path names several servers without a drive's colon.
  return rest.find(u";\\\\") == TextView::npos && rest.back() != u';';
}

std::optional<KeyForm> FormOfKey(TextView lastName, const StorePicture& picture) {
  const StoredValue* other = nullptr;
  std::vector<TextView> digits;
  std::optional<TextView> prefix;
  for (const StoredValue& value : picture.values) {
    if (!IsEntry(value)) {
      if (std::exchange(other, &value)) return std::nullopt;
      continue;
    }
    const NumberedName name = TakeApart(value.name);
    if (prefix && *prefix != name.prefix) return std::nullopt;
    prefix = name.prefix;
    digits.push_back(name.digits);
  }
  if (!prefix || prefix->size() > kLongestPrefix) return std::nullopt;
  if (!SaysRecent(lastName) && !SaysRecent(*prefix)) return std::nullopt;
  const bool isFile1 = digits.size() == 1 && *prefix == u"File" && digits.front() == u"1";
  if (digits.size() < 2 && !isFile1) return std::nullopt;
  auto names = NamesFrom(*prefix, digits);
  if (!names) return std::nullopt;
  if (!other) return KeyForm{std::move(*names), {}, 0};
  if (!Counts(*other, digits.size(), *prefix)) return std::nullopt;
  return KeyForm{std::move(*names), other->name, other->type};
}

}  // namespace torvane
