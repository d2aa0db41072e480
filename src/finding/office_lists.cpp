#include "finding/office_lists.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "finding/key_form.h"
#include "readers/icon_paths.h"
#include "storage/clsRegistry.h"
#include "storage/registry_data.h"

namespace torvane {
namespace {

constexpr TextView kItem = u"Item ";
constexpr TextView kColumns[] = {u"File Name", u"File Path", u"Last Used"};
constexpr std::uint64_t kPinnedFlag = 1;

// The icon by the path, or by the kind of a name that is none.
constexpr int kFileKind = 12;
constexpr int kAddressKind = 13;

std::optional<std::uint64_t> FromHex(TextView digits) {
  constexpr std::size_t kMostDigits = 16;
  if (digits.empty() || digits.size() > kMostDigits) return std::nullopt;
  std::uint64_t number = 0;
  for (const char16_t unit : LowerCase(Text(digits))) {
    const auto digit = TextView(u"0123456789abcdef").find(unit);
    if (digit == TextView::npos) return std::nullopt;
    number = number << 4U | digit;
  }
  return number;
}

bool IsVersion(TextView name) {
  return !name.empty() && name.find_first_not_of(u"0123456789.") == TextView::npos;
}

ShownEntry ShowOfficeItem(const NamedValue& value) {
  const Text text = AsText(value.value);
  const auto item = ReadOfficeItem(text);
  const Text path = item ? item->path : text;
  ShownEntry shown{.kind = kAddressKind, .iconPath = u".html", .text1 = path};
  if (IsAbsolutePath(path)) shown = FileEntry(kFileKind, SplitEntryPath(path));
  if (!item) return shown;
  shown.text3 = LocalTimeText(item->time);
  if (!item->isPinned) return shown;
  shown.text3 += shown.text3.empty() ? u"pinned" : u", pinned";
  shown.isPinned = true;
  return shown;
}

}  // namespace

std::optional<OfficeItem> ReadOfficeItem(TextView text) {
  OfficeItem item;
  bool hasFlags = false;
  while (text.starts_with(u'[')) {
    const auto end = text.find(u']');
    if (end == TextView::npos || end < 2) return std::nullopt;
    const auto number = FromHex(text.substr(2, end - 2));
    if (!number) return std::nullopt;
    if (text[1] == u'F') {
      hasFlags = true;
      item.isPinned = (*number & kPinnedFlag) != 0;
    } else if (text[1] == u'T') {
      item.time = *number;
    }
    text.remove_prefix(end + 1);
  }
  if (!hasFlags || text.size() < 2 || text.front() != u'*') return std::nullopt;
  item.path = text.substr(1);
  return item;
}

bool IsOfficeKey(TextView key) {
  const TextView last = key.substr(key.rfind(u'\\') + 1);
  if (!SameName(last, u"File MRU") && !SameName(last, u"Place MRU")) return false;
  std::vector<TextView> parts;
  for (std::size_t begin = 0; begin <= key.size();) {
    const std::size_t end = std::min(key.find(u'\\', begin), key.size());
    parts.push_back(key.substr(begin, end - begin));
    begin = end + 1;
  }
  const bool isOfUser = parts.size() == 7 && SameName(parts[4], u"User MRU");
  if (parts.size() != 5 && !isOfUser) return false;
  return SameName(parts[0], u"Microsoft") && SameName(parts[1], u"Office") && IsVersion(parts[2]);
}

bool HasOfficeItems(const StorePicture& picture) {
  return std::any_of(picture.values.begin(), picture.values.end(), [](const StoredValue& value) {
    const NumberedName name = TakeApart(value.name);
    return value.type == kTextType && SameName(name.prefix, kItem) && !name.digits.empty() &&
           ReadOfficeItem(AsText(ReadData(value.type, value.bytes)));
  });
}

EntryNames OfficeNames() {
  return {EntryNames::Kind::Numbered, Text(kItem), 1, 1};
}

Text LocalTimeText(std::uint64_t time) {
  constexpr std::uint64_t kSecond = 10'000'000;
  constexpr std::int64_t kFrom1601To1970 = 11'644'473'600;
  if (time == 0) return {};
  const auto seconds =
      static_cast<std::time_t>(static_cast<std::int64_t>(time / kSecond) - kFrom1601To1970);
  const std::tm* const local = seconds < 0 ? nullptr : std::localtime(&seconds);
  if (!local) return {};
  std::array<char, 32> text{};
  const std::size_t size = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", local);
  return {text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size)};
}

constexpr ListForm kOfficeForm{kColumns, CountRule::Entries, PassNothing, ShowOfficeItem, nullptr};

}  // namespace torvane
