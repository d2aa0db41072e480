#include "finding/list_finder.h"

#include <array>

#include "platform/winapi.h"

namespace torvane {
namespace {

constexpr std::size_t kLongestName = 16384;
// A link that leads above itself has no end.
constexpr std::size_t kDeepest = 64;
// Nobody lists so many files as recent ones; such a key would hold the window up.
constexpr DWORD kMostValues = 4096;
// The clock is asked once for so many keys.
constexpr int kKeysAtATime = 16;

constexpr TextView kOwnKey = u"Halvex\\Torvane";

}  // namespace

// A key and how far its subkeys have been gone through.
class ListFinder::Level {
 public:
  Level(HKEY above, const Text& name, Text key) : key_(std::move(key)) {
    constexpr REGSAM kRights = KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS;
    if (RegOpenKeyExW(above, Wide(name), 0, kRights, &handle_) != ERROR_SUCCESS) handle_ = nullptr;
  }
  Level(Level&& other) noexcept
      : handle_(std::exchange(other.handle_, nullptr)),
        key_(std::move(other.key_)),
        next_(other.next_) {}
  Level& operator=(Level&&) = delete;
  ~Level() {
    if (handle_) RegCloseKey(handle_);
  }

  HKEY handle() const { return handle_; }
  /// From what stands behind "Software\" on.
  const Text& key() const { return key_; }
  /// The next subkey's name, through `room`; nothing behind the last.
  std::optional<Text> NextName(Text& room) {
    auto size = static_cast<DWORD>(room.size());
    if (!handle_ || RegEnumKeyExW(handle_, next_++, WideBuffer(room), &size, nullptr, nullptr,
                                  nullptr, nullptr) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    return room.substr(0, size);
  }
  /// The name of a value, through `room`; nothing behind the last.
  std::optional<Text> ValueName(DWORD index, Text& room) const {
    auto size = static_cast<DWORD>(room.size());
    if (!handle_ || RegEnumValueW(handle_, index, WideBuffer(room), &size, nullptr, nullptr,
                                  nullptr, nullptr) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    return room.substr(0, size);
  }
  DWORD ValueCount() const {
    DWORD count = 0;
    RegQueryInfoKeyW(handle_, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr,
                     nullptr, nullptr, nullptr);
    return count;
  }

 private:
  HKEY handle_ = nullptr;
  Text key_;
  DWORD next_ = 0;
};

ListFinder::ListFinder(NameSet known) : known_(std::move(known)), name_(kLongestName, u'\0') {
  levels_.emplace_back(HKEY_CURRENT_USER, u"Software", Text());
}

ListFinder::~ListFinder() = default;

bool ListFinder::Look(std::chrono::steady_clock::duration time) {
  const auto end = std::chrono::steady_clock::now() + time;
  do {
    for (int n = 0; n < kKeysAtATime && !levels_.empty(); ++n) Step();
  } while (!levels_.empty() && std::chrono::steady_clock::now() < end);
  return levels_.empty();
}

void ListFinder::Step() {
  Level& above = levels_.back();
  const auto name = above.NextName(name_);
  if (!name || levels_.size() > kDeepest) {
    levels_.pop_back();
    return;
  }
  Text key = above.key().empty() ? *name : above.key() + u'\\' + *name;
  if (SameName(key, kOwnKey)) return;
  levels_.emplace_back(above.handle(), *name, std::move(key));
  Examine();
}

void ListFinder::Examine() {
  const Level& level = levels_.back();
  std::vector<Text> names;
  for (DWORD index = 0; index < 2; ++index) {
    if (auto name = level.ValueName(index, name_)) names.push_back(std::move(*name));
  }
  if (!MayBeList(level.key(), names) || known_.contains(level.key())) return;
  if (level.ValueCount() > kMostValues) return;
  const KeyStore store(u"software\\" + level.key());
  if (auto list = ListOfKey(level.key(), store.Read())) lists_.push_back(std::move(*list));
}

std::vector<FoundList> ListFinder::Lists() && {
  NameLists(lists_);
  return std::move(lists_);
}

}  // namespace torvane
