// The values of a registry key, taken by one enumeration.

#include <algorithm>
#include <cstring>

#include "platform/winapi.h"
#include "storage/clsRegistry.h"
#include "storage/value_store.h"

namespace torvane {
namespace {

// An open key of the current user's, closed with its scope; null where there is none.
class ReadableKey {
 public:
  explicit ReadableKey(const Text& path) {
    if (RegOpenKeyExW(HKEY_CURRENT_USER, Wide(path), 0, KEY_QUERY_VALUE, &handle_) !=
        ERROR_SUCCESS) {
      handle_ = nullptr;
    }
  }
  ReadableKey(const ReadableKey&) = delete;
  ReadableKey& operator=(const ReadableKey&) = delete;
  ~ReadableKey() {
    if (handle_) RegCloseKey(handle_);
  }
  HKEY handle() const { return handle_; }

 private:
  HKEY handle_ = nullptr;
};

// Room for a name and data of one value; most need no more.
struct Buffers {
  Text name = Text(256, u'\0');
  Bytes data = Bytes(4096);
};

bool MeasureLongest(HKEY key, Buffers& buffers) {
  DWORD longestName = 0;
  DWORD longestData = 0;
  if (RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       &longestName, &longestData, nullptr, nullptr) != ERROR_SUCCESS) {
    return false;
  }
  buffers.name.resize(std::max<std::size_t>(buffers.name.size(), std::size_t{longestName} + 1));
  buffers.data.resize(std::max<std::size_t>(buffers.data.size(), std::size_t{longestData} + 2));
  return true;
}

// The values as far as the key gives them, until one is taken with false.
void WalkValues(HKEY key, const std::function<bool(StoredValue)>& take) {
  Buffers buffers;
  DWORD index = 0;
  while (true) {
    auto nameSize = static_cast<DWORD>(buffers.name.size());
    auto dataSize = static_cast<DWORD>(buffers.data.size());
    DWORD type = 0;
    const LSTATUS status =
        RegEnumValueW(key, index, WideBuffer(buffers.name), &nameSize, nullptr, &type,
                      reinterpret_cast<BYTE*>(buffers.data.data()), &dataSize);
    if (status == ERROR_MORE_DATA) {
      // The key is only measured where it has to be: that takes a look at all its values.
      const std::size_t before = buffers.name.size() + buffers.data.size();
      if (!MeasureLongest(key, buffers) || buffers.name.size() + buffers.data.size() == before) {
        return;
      }
      continue;
    }
    if (status != ERROR_SUCCESS) return;
    if (!take({buffers.name.substr(0, nameSize), static_cast<std::int32_t>(type),
               Bytes(buffers.data.begin(), buffers.data.begin() + dataSize)})) {
      return;
    }
    ++index;
  }
}

std::size_t FirstNul(const Bytes& bytes) {
  return static_cast<std::size_t>(std::find(bytes.begin(), bytes.end(), std::byte{0}) -
                                  bytes.begin());
}

}  // namespace

StorePicture KeyStore::Read() const {
  const ReadableKey key(path_);
  if (!key.handle()) return {};
  StorePicture picture{true, {}};
  WalkValues(key.handle(), [&](StoredValue value) {
    picture.values.push_back(std::move(value));
    return true;
  });
  return picture;
}

bool KeyStore::Any(const std::function<bool(const StoredValue&)>& wanted) const {
  const ReadableKey key(path_);
  bool found = false;
  if (!key.handle()) return found;
  WalkValues(key.handle(), [&](const StoredValue& value) { return !(found = wanted(value)); });
  return found;
}

Variant KeyStore::ValueOf(const StoredValue& stored) const {
  return ReadData(stored.type, stored.bytes);
}

bool KeyStore::ReadsWhole(const StoredValue& stored) const {
  switch (static_cast<DWORD>(stored.type)) {
    case REG_SZ:
    case REG_EXPAND_SZ:
    case REG_MULTI_SZ:
      return stored.bytes.size() % sizeof(char16_t) == 0;
    case REG_DWORD:
    case REG_DWORD_BIG_ENDIAN:
      return stored.bytes.size() == sizeof(std::int32_t);
    default: {
      // Bytes are read as text up to their first NUL.
      const std::size_t end = FirstNul(stored.bytes);
      if (end + 1 < stored.bytes.size()) return false;
      const std::string seen(reinterpret_cast<const char*>(stored.bytes.data()), end);
      return ToAnsi(FromAnsi(seen)) == seen;
    }
  }
}

StoredValue KeyStore::ValueFor(const Text& name, const Text& text) const {
  return {name, TypeForText(text), BytesOfText({text.c_str(), text.size() + 1})};
}

bool KeyStore::Takes(const Text& /*text*/) const {
  return true;
}

Text KeyStore::Identity() const {
  return u"HKEY_CURRENT_USER\\" + path_;
}

std::shared_ptr<clsRegistry> KeyStore::Key(const Text& value) const {
  auto registry = kept_.lock();
  if (!registry) {
    registry = std::make_shared<clsRegistry>();
    registry->ClassKey(kCurrentUser);
    registry->SectionKey(path_);
  }
  registry->ValueKey(value);
  return registry;
}

std::shared_ptr<const void> KeyStore::KeepOpen() const {
  const auto registry = Key({});
  registry->KeepOpen();
  kept_ = registry;
  return registry;
}

void KeyStore::Delete(const StoredValue& value) const {
  Key(value.name)->DeleteValue();
}

void KeyStore::Set(const StoredValue& value) const {
  Key(value.name)->Data({value.type, value.bytes});
}

void KeyStore::DeleteAll() const {
  for (const StoredValue& value : Read().values) Delete(value);
}

}  // namespace torvane
