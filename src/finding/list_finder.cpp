#include "finding/list_finder.h"

#include "platform/winapi.h"
#include "storage/value_store.h"

namespace torvane {
namespace {

// Nobody lists so many files as recent ones; such a key would hold the window up.
constexpr DWORD kMostValues = 4096;
// The clock is asked once for so many keys.
constexpr int kKeysAtATime = 16;

constexpr TextView kOwnKey = u"Halvex\\Torvane";

bool IsOwn(TextView key) {
  return SameName(key.substr(0, kOwnKey.size()), kOwnKey) &&
         (key.size() == kOwnKey.size() || key[kOwnKey.size()] == u'\\');
}

bool HasTooMany(const Text& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, Wide(path), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
    return true;
  DWORD count = 0;
  RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr,
                   nullptr, nullptr, nullptr);
  RegCloseKey(key);
  return count > kMostValues;
}

}  // namespace

ListFinder::ListFinder(NameSet known) : known_(std::move(known)), walk_(WalkKeys()) {}

bool ListFinder::Look(std::chrono::steady_clock::duration time) {
  const auto end = std::chrono::steady_clock::now() + time;
  do {
    for (int n = 0; n < kKeysAtATime; ++n) {
      if (!walk_->Next(key_)) return true;
      Examine();
    }
  } while (std::chrono::steady_clock::now() < end);
  return false;
}

void ListFinder::Examine() {
  if (!MayBeList(key_.path, key_.firstNames)) return;
  if (known_.contains(key_.path) || IsOwn(key_.path)) return;
  const Text path = u"software\\" + key_.path;
  if (HasTooMany(path)) return;
  if (auto list = ListOfKey(key_.path, KeyStore(path).Read())) {
    lists_.push_back(std::move(*list));
    known_.insert(key_.path);
  }
}

std::vector<FoundList> ListFinder::Lists() && {
  NameLists(lists_);
  return std::move(lists_);
}

}  // namespace torvane
