#include "storage/clsRegistry.h"

#include <utility>

#include "platform/extras.h"
#include "platform/winapi.h"
#include "storage/raised_error.h"

// Text crosses in the ANSI code page, so a byte count here is also a character count.

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

// An open key, closed with its scope. A key that couldn't be opened is null, which every call
// refuses as an invalid handle.
class OpenKey {
 public:
  static OpenKey Existing(std::int32_t root, const std::string& path, REGSAM rights) {
    OpenKey key;
    key.status_ = RegOpenKeyExA(RootKey(root), path.c_str(), 0, rights, &key.handle_);
    return key;
  }

  static OpenKey Created(std::int32_t root, const std::string& path) {
    OpenKey key;
    SECURITY_ATTRIBUTES security{};
    DWORD disposition = 0;
    std::string noClass;
    key.status_ =
        RegCreateKeyExA(RootKey(root), path.c_str(), 0, noClass.data(), REG_OPTION_NON_VOLATILE,
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

[[noreturn]] void Raise(std::int32_t number, const Text& description) {
  throw RaisedError(number, ExecutableBaseName() + u".cRegistry", description);
}

std::int32_t ReverseLongBytes(std::int32_t number) {
  const auto bits = static_cast<std::uint32_t>(number);
  return static_cast<std::int32_t>((bits >> 24) | ((bits >> 8) & 0xFF00U) |
                                   ((bits << 8) & 0xFF0000U) | (bits << 24));
}

std::string ExpandEnvironmentText(const std::string& text) {
  char none = '\0';
  const DWORD size = ExpandEnvironmentStringsA(text.c_str(), &none, 0);
  if (size == 0) return text;
  std::string expanded(size, '\0');
  ExpandEnvironmentStringsA(text.c_str(), expanded.data(), size);
  expanded.resize(size - 1);
  return expanded;
}

// Whether a text refers to the environment: a percent sign, and another one with something between.
bool HasReference(const Text& text) {
  const auto first = text.find(u'%');
  return first != Text::npos && text.find(u'%', first + 2) != Text::npos;
}

// One value of an open key whose type and size are known.
class StoredValue {
 public:
  StoredValue(const OpenKey& key, const std::string& name, DWORD type, DWORD size)
      : key_(key), name_(name), type_(type), size_(size) {}

  Variant Read() const {
    switch (type_) {
      case REG_SZ:
      case REG_MULTI_SZ:
        return size_ == 0 ? Variant() : Variant(FromAnsi(ReadText()));
      case REG_EXPAND_SZ:
        return size_ == 0 ? Variant() : Variant(FromAnsi(ExpandEnvironmentText(ReadText())));
      case REG_DWORD:
        return ReadNumber();
      case REG_DWORD_BIG_ENDIAN:
        return ReverseLongBytes(ReadNumber());
      default:
        return ReadBytes();
    }
  }

 private:
  void Fill(void* buffer, DWORD size) const {
    // A failure leaves the buffer's zeros.
    RegQueryValueExA(key_.handle(), name_.c_str(), nullptr, nullptr, static_cast<BYTE*>(buffer),
                     &size);
  }

  std::string ReadText() const {
    std::string text(size_, '\0');
    Fill(text.data(), size_);
    text.resize(size_ - 1);
    return text;
  }

  std::int32_t ReadNumber() const {
    std::int32_t number = 0;
    Fill(&number, sizeof number);
    return number;
  }

  Bytes ReadBytes() const {
    Bytes bytes(size_ + std::size_t{1});
    Fill(bytes.data(), size_);
    return bytes;
  }

  const OpenKey& key_;
  const std::string& name_;
  DWORD type_;
  DWORD size_;
};

LSTATUS WriteText(const OpenKey& key, const std::string& name, const Text& text) {
  const std::string bytes = ToAnsi(text);
  return RegSetValueExA(key.handle(), name.c_str(), 0, HasReference(text) ? REG_EXPAND_SZ : REG_SZ,
                        reinterpret_cast<const BYTE*>(bytes.c_str()),
                        static_cast<DWORD>(bytes.size() + 1));
}

LSTATUS WriteNumber(const OpenKey& key, const std::string& name, const Variant& value) {
  std::int32_t number = 0;
  if (const auto* wide = std::get_if<std::int32_t>(&value)) {
    number = *wide;
  } else if (const auto* narrow = std::get_if<std::int16_t>(&value)) {
    number = *narrow;
  } else {
    return ERROR_SUCCESS;
  }
  return RegSetValueExA(key.handle(), name.c_str(), 0, REG_DWORD,
                        reinterpret_cast<const BYTE*>(&number), sizeof number);
}

LSTATUS WriteBytes(const OpenKey& key, const std::string& name, const Variant& value) {
  const auto* bytes = std::get_if<Bytes>(&value);
  if (!bytes) throw RaisedError(kErrorNumber, {}, {});
  const std::size_t stored = bytes->empty() ? 0 : bytes->size() - 1;
  return RegSetValueExA(key.handle(), name.c_str(), 0, REG_BINARY,
                        reinterpret_cast<const BYTE*>(bytes->data()), static_cast<DWORD>(stored));
}

LSTATUS WriteByType(const OpenKey& key, const std::string& name, std::int32_t type,
                    const Variant& value) {
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

void clsRegistry::SectionKey(const Text& sSectionKey) {
  sectionKey_ = sSectionKey;
  sectionBytes_ = ToAnsi(sSectionKey);
}

void clsRegistry::ValueKey(const Text& sValueKey) {
  valueKey_ = sValueKey;
  valueBytes_ = ToAnsi(sValueKey);
}

bool clsRegistry::KeyExists() const {
  return OpenKey::Existing(classKey_, sectionBytes_, kRead).opened();
}

bool clsRegistry::CreateKey() const {
  if (!OpenKey::Created(classKey_, sectionBytes_).opened()) {
    Raise(kErrorNumber, u"Failed to create registry Key: '" + sectionKey_);
  }
  return true;
}

bool clsRegistry::DeleteValue() const {
  const OpenKey key = OpenKey::Existing(classKey_, sectionBytes_, kWrite);
  if (!key.opened()) {
    Raise(kErrorNumber, u"Failed to open key '" + Decimal(classKey_) + u"',Section: '" +
                            sectionKey_ + u"' for delete access");
  }
  if (RegDeleteValueA(key.handle(), valueBytes_.c_str()) != ERROR_SUCCESS) {
    Raise(kErrorNumber, u"Failed to delete registry Key: '" + Decimal(classKey_) + u"',Section: '" +
                            sectionKey_ + u"',Key: '" + valueKey_);
  }
  return true;
}

Variant clsRegistry::Value() {
  const OpenKey key = OpenKey::Existing(classKey_, sectionBytes_, kRead);
  BYTE probe[4] = {};
  DWORD type = 0;
  DWORD size = 0;
  const LSTATUS status =
      RegQueryValueExA(key.handle(), valueBytes_.c_str(), nullptr, &type, probe, &size);
  if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) return default_;
  valueType_ = static_cast<std::int32_t>(type);
  return StoredValue(key, valueBytes_, type, size).Read();
}

Text clsRegistry::WriteFailure(const Text& value) const {
  return u"Failed to set registry value Key: '" + Decimal(classKey_) + u"',Section: '" +
         sectionKey_ + u"',Key: '" + valueKey_ + u"' to value: '" + value + u"'";
}

void clsRegistry::Value(const Variant& vValue) const {
  const OpenKey key = OpenKey::Created(classKey_, sectionBytes_);
  if (!key.opened()) Raise(kErrorNumber, WriteFailure(AsText(vValue)));
  if (WriteByType(key, valueBytes_, valueType_, vValue) != ERROR_SUCCESS) {
    Raise(kStatusErrorNumber, WriteFailure(AsText(vValue)));
  }
}

std::optional<StoredBytes> clsRegistry::Stored() const {
  const OpenKey key = OpenKey::Existing(classKey_, sectionBytes_, kRead);
  const auto* name = reinterpret_cast<const WCHAR*>(valueKey_.c_str());
  DWORD type = 0;
  DWORD size = 0;
  if (RegQueryValueExW(key.handle(), name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  StoredBytes stored{static_cast<std::int32_t>(type), Bytes(size)};
  if (RegQueryValueExW(key.handle(), name, nullptr, nullptr,
                       reinterpret_cast<BYTE*>(stored.bytes.data()), &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  stored.bytes.resize(size);
  return stored;
}

void clsRegistry::Stored(const StoredBytes& stored) const {
  const OpenKey key = OpenKey::Created(classKey_, sectionBytes_);
  if (!key.opened()) Raise(kErrorNumber, WriteFailure({}));
  const LSTATUS status = RegSetValueExW(
      key.handle(), reinterpret_cast<const WCHAR*>(valueKey_.c_str()), 0,
      static_cast<DWORD>(stored.type), reinterpret_cast<const BYTE*>(stored.bytes.data()),
      static_cast<DWORD>(stored.bytes.size()));
  if (status != ERROR_SUCCESS) Raise(kStatusErrorNumber, WriteFailure({}));
}

bool clsRegistry::EnumerateValues(std::vector<Text>& sKeyNames, std::int32_t& iKeyCount) const {
  iKeyCount = 0;
  sKeyNames.clear();
  const OpenKey key = OpenKey::Existing(classKey_, sectionBytes_, kRead);
  DWORD longestName = 0;
  if (!key.opened() ||
      RegQueryInfoKeyA(key.handle(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       &longestName, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
    return true;
  }
  // The length counts characters; in a multi-byte code page a name takes up to four bytes each.
  std::string buffer(std::size_t{longestName} * 4 + 1, '\0');
  for (DWORD index = 0;; ++index) {
    auto size = static_cast<DWORD>(buffer.size());
    if (RegEnumValueA(key.handle(), index, buffer.data(), &size, nullptr, nullptr, nullptr,
                      nullptr) != ERROR_SUCCESS) {
      return true;
    }
    sKeyNames.push_back(FromAnsi({buffer.data(), size}));
    ++iKeyCount;
  }
}

}  // namespace torvane
