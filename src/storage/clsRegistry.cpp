#include "storage/clsRegistry.h"

#include <utility>

#include "platform/extras.h"
#include "platform/winapi.h"
#include "storage/raised_error.h"
#include "storage/registry_data.h"

namespace torvane {
namespace {

constexpr REGSAM kRead = KEY_QUERY_VALUE;
constexpr REGSAM kWrite = KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_CREATE_SUB_KEY |
                          KEY_ENUMERATE_SUB_KEYS | KEY_NOTIFY | KEY_CREATE_LINK;

constexpr std::int32_t kErrorNumber = 26001;
constexpr auto kStatusErrorNumber = static_cast<std::int32_t>(0x800469A9);

HKEY RootKey(std::int32_t classKey) {
  return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(classKey));
}

[[noreturn]] void Raise(std::int32_t number, const Text& description) {
  throw RaisedError(number, ExecutableBaseName() + u".cRegistry", description);
}

LSTATUS Query(HKEY key, const Text& name, DWORD& type, Bytes& bytes) {
  auto size = static_cast<DWORD>(bytes.size());
  const LSTATUS status = RegQueryValueExW(key, Wide(name), nullptr, &type,
                                          reinterpret_cast<BYTE*>(bytes.data()), &size);
  bytes.resize(size);
  return status;
}

// A value of an open key; nothing where there is none. Most values fit at the first attempt, and
// one that another program lengthens meanwhile at a later one.
std::optional<TypedData> DataOf(HKEY key, const Text& name) {
  constexpr std::size_t kUsualSize = 1024;
  Bytes bytes(kUsualSize);
  DWORD type = REG_NONE;
  LSTATUS status = Query(key, name, type, bytes);
  while (status == ERROR_MORE_DATA) status = Query(key, name, type, bytes);
  if (status != ERROR_SUCCESS) return std::nullopt;
  return TypedData{static_cast<std::int32_t>(type), std::move(bytes)};
}

LSTATUS WriteText(HKEY key, const Text& name, const Text& text) {
  return RegSetValueExW(key, Wide(name), 0, static_cast<DWORD>(TypeForText(text)),
                        reinterpret_cast<const BYTE*>(text.c_str()),
                        static_cast<DWORD>((text.size() + 1) * sizeof(char16_t)));
}

LSTATUS WriteNumber(HKEY key, const Text& name, const Variant& value) {
  std::int32_t number = 0;
  if (const auto* wide = std::get_if<std::int32_t>(&value)) {
    number = *wide;
  } else if (const auto* narrow = std::get_if<std::int16_t>(&value)) {
    number = *narrow;
  } else {
    return ERROR_SUCCESS;
  }
  return RegSetValueExW(key, Wide(name), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                        sizeof number);
}

LSTATUS WriteBytes(HKEY key, const Text& name, const Variant& value) {
  const auto* bytes = std::get_if<Bytes>(&value);
  if (!bytes) throw RaisedError(kErrorNumber, {}, {});
  const std::size_t stored = bytes->empty() ? 0 : bytes->size() - 1;
  return RegSetValueExW(key, Wide(name), 0, REG_BINARY,
                        reinterpret_cast<const BYTE*>(bytes->data()), static_cast<DWORD>(stored));
}

LSTATUS WriteByType(HKEY key, const Text& name, std::int32_t type, const Variant& value) {
  switch (static_cast<DWORD>(type)) {
    case REG_SZ:
    case REG_EXPAND_SZ:
      return WriteText(key, name, AsText(value));
    case REG_BINARY:
      return WriteBytes(key, name, value);
    case REG_DWORD:
    case REG_DWORD_BIG_ENDIAN:
      return WriteNumber(key, name, value);
    default:
      return ERROR_INVALID_DATA;
  }
}

}  // namespace

// An open key, closed with its scope. A key that couldn't be opened is null, which every call
// refuses as an invalid handle.
class clsRegistry::OpenKey {
 public:
  static OpenKey Existing(std::int32_t root, const Text& path, REGSAM rights) {
    OpenKey key;
    key.status_ = RegOpenKeyExW(RootKey(root), Wide(path), 0, rights, &key.handle_);
    return key;
  }

  static OpenKey Created(std::int32_t root, const Text& path) {
    OpenKey key;
    SECURITY_ATTRIBUTES security{};
    DWORD disposition = 0;
    key.status_ = RegCreateKeyExW(RootKey(root), Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                  kWrite, &security, &key.handle_, &disposition);
    return key;
  }

  OpenKey(OpenKey&& other) noexcept
      : handle_(std::exchange(other.handle_, nullptr)), status_(other.status_) {}
  OpenKey& operator=(OpenKey&&) = delete;
  ~OpenKey() {
    if (handle_) RegCloseKey(handle_);
  }

  HKEY handle() const { return handle_; }
  bool opened() const { return status_ == ERROR_SUCCESS; }

 private:
  OpenKey() = default;

  HKEY handle_ = nullptr;
  LSTATUS status_ = ERROR_SUCCESS;
};

template <class Open>
std::shared_ptr<const clsRegistry::OpenKey> clsRegistry::ForChange(const Open& open) const {
  if (kept_) return kept_;
  auto key = std::make_shared<const OpenKey>(open());
  if (keepsOpen_ && key->opened()) kept_ = key;
  return key;
}

bool clsRegistry::KeyExists() const {
  return OpenKey::Existing(classKey_, sectionKey_, kRead).opened();
}

bool clsRegistry::CreateKey() const {
  if (!OpenKey::Created(classKey_, sectionKey_).opened()) {
    Raise(kErrorNumber, u"Failed to create registry Key: '" + sectionKey_);
  }
  return true;
}

bool clsRegistry::DeleteValue() const {
  const auto key = ForChange([this] { return OpenKey::Existing(classKey_, sectionKey_, kWrite); });
  if (!key->opened()) {
    Raise(kErrorNumber, u"Failed to open key '" + Decimal(classKey_) + u"',Section: '" +
                            sectionKey_ + u"' for delete access");
  }
  if (RegDeleteValueW(key->handle(), Wide(valueKey_)) != ERROR_SUCCESS) {
    Raise(kErrorNumber, u"Failed to delete registry Key: '" + Decimal(classKey_) + u"',Section: '" +
                            sectionKey_ + u"',Key: '" + valueKey_);
  }
  return true;
}

Variant clsRegistry::Value() {
  const auto stored = Data();
  if (!stored) return default_;
  valueType_ = stored->type;
  return ReadData(stored->type, stored->bytes);
}

Text clsRegistry::WriteFailure(const Text& value) const {
  return u"Failed to set registry value Key: '" + Decimal(classKey_) + u"',Section: '" +
         sectionKey_ + u"',Key: '" + valueKey_ + u"' to value: '" + value + u"'";
}

void clsRegistry::Value(const Variant& vValue) const {
  const auto key = ForChange([this] { return OpenKey::Created(classKey_, sectionKey_); });
  if (!key->opened()) Raise(kErrorNumber, WriteFailure(AsText(vValue)));
  if (WriteByType(key->handle(), valueKey_, valueType_, vValue) != ERROR_SUCCESS) {
    Raise(kStatusErrorNumber, WriteFailure(AsText(vValue)));
  }
}

std::optional<TypedData> clsRegistry::Data() const {
  return DataOf(OpenKey::Existing(classKey_, sectionKey_, kRead).handle(), valueKey_);
}

void clsRegistry::Data(const TypedData& stored) const {
  const auto key = ForChange([this] { return OpenKey::Created(classKey_, sectionKey_); });
  if (!key->opened()) Raise(kErrorNumber, WriteFailure({}));
  // The call takes a NUL that happens to stand behind a text for the one that the text lacks.
  // Of a single byte it looks at the unit ahead.
  Bytes bytes(sizeof(char16_t));
  bytes.insert(bytes.end(), stored.bytes.begin(), stored.bytes.end());
  bytes.insert(bytes.end(), sizeof(char16_t), std::byte{0xFF});
  const LSTATUS status =
      RegSetValueExW(key->handle(), Wide(valueKey_), 0, static_cast<DWORD>(stored.type),
                     reinterpret_cast<const BYTE*>(bytes.data()) + sizeof(char16_t),
                     static_cast<DWORD>(stored.bytes.size()));
  if (status != ERROR_SUCCESS) Raise(kStatusErrorNumber, WriteFailure({}));
}

bool clsRegistry::EnumerateValues(std::vector<Text>& sKeyNames, std::int32_t& iKeyCount) const {
  constexpr std::size_t kLongestName = 16383;
  iKeyCount = 0;
  sKeyNames.clear();
  const OpenKey key = OpenKey::Existing(classKey_, sectionKey_, kRead);
  Text buffer(kLongestName + 1, u'\0');
  for (DWORD index = 0;; ++index) {
    auto size = static_cast<DWORD>(buffer.size());
    if (RegEnumValueW(key.handle(), index, WideBuffer(buffer), &size, nullptr, nullptr, nullptr,
                      nullptr) != ERROR_SUCCESS) {
      return true;
    }
    sKeyNames.push_back(buffer.substr(0, size));
    ++iKeyCount;
  }
}

}  // namespace torvane
