// From key to key by the registry's calls.
#include "platform/key_walk.h"

#include <optional>
#include <utility>

#include "platform/winapi.h"

namespace torvane {
namespace {

constexpr std::size_t kLongestName = 16384;
// A link that leads above itself has no end.
constexpr std::size_t kDeepest = 64;

/// A key and how far its subkeys have been gone through.
class Level {
 public:
  Level(HKEY above, const std::u16string& name, std::u16string path) : path_(std::move(path)) {
    constexpr REGSAM kRights = KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS;
    if (RegOpenKeyExW(above, Wide(name), 0, kRights, &handle_) != ERROR_SUCCESS) handle_ = nullptr;
  }
  Level(Level&& other) noexcept
      : handle_(std::exchange(other.handle_, nullptr)),
        path_(std::move(other.path_)),
        next_(other.next_) {}
  Level& operator=(Level&&) = delete;
  ~Level() {
    if (handle_) RegCloseKey(handle_);
  }

  HKEY handle() const { return handle_; }
  const std::u16string& path() const { return path_; }
  /// The next subkey's name, through `room`; nothing behind the last.
  std::optional<std::u16string> nextName(std::u16string& room) {
    auto size = static_cast<DWORD>(room.size());
    if (!handle_ || RegEnumKeyExW(handle_, next_++, WideBuffer(room), &size, nullptr, nullptr,
                                  nullptr, nullptr) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    return room.substr(0, size);
  }
  /// The name of a value, through `room`; nothing behind the last.
  std::optional<std::u16string> valueName(DWORD index, std::u16string& room) const {
    auto size = static_cast<DWORD>(room.size());
    if (!handle_ || RegEnumValueW(handle_, index, WideBuffer(room), &size, nullptr, nullptr,
                                  nullptr, nullptr) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    return room.substr(0, size);
  }

 private:
  HKEY handle_ = nullptr;
  std::u16string path_;
  DWORD next_ = 0;
};

class CallWalk : public KeyWalk {
 public:
  CallWalk() : room_(kLongestName, u'\0') {
    levels_.emplace_back(HKEY_CURRENT_USER, u"Software", std::u16string());
  }

  bool Next(WalkedKey& key) override {
    while (!levels_.empty()) {
      if (!step()) continue;
      key.firstNames.clear();
      for (DWORD index = 0; index < 2; ++index) {
        if (auto name = levels_.back().valueName(index, room_)) key.firstNames.push_back(*name);
      }
      if (key.firstNames.empty()) continue;
      key.path = levels_.back().path();
      return true;
    }
    return false;
  }

 private:
  /// Goes down to the next subkey, or up where there is none; gives whether it went down.
  bool step() {
    Level& above = levels_.back();
    const auto name = above.nextName(room_);
    if (!name || levels_.size() > kDeepest) {
      levels_.pop_back();
      return false;
    }
    std::u16string path = above.path().empty() ? *name : above.path() + u'\\' + *name;
    levels_.emplace_back(above.handle(), *name, std::move(path));
    return true;
  }

  std::vector<Level> levels_;  ///< the keys on the way to the one in hand
  std::u16string room_;
};

}  // namespace

std::unique_ptr<KeyWalk> WalkKeys() {
  return std::make_unique<CallWalk>();
}

}  // namespace torvane
