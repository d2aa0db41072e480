// The registry's A calls over the prefix's hives: handles, rights, sizes and the code page. What
// changes a key asks its hive first whether it may be changed, so that a refused change leaves
// nothing behind; see HiveRole for which may.
#include "platform/posix/registry.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "platform/posix/code_page.h"
#include "platform/posix/registry_world.h"
#include "platform/winapi.h"

namespace torvane::posix {
namespace {

constexpr std::size_t kLongestKeyName = 255;
constexpr std::size_t kLongestValueName = 16383;
constexpr std::ptrdiff_t kDeepestKey = 512;
constexpr REGSAM kChangingRights = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | KEY_CREATE_LINK;

bool IsTextType(DWORD type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

std::u16string FromArgument(LPCSTR text) {
  return text == nullptr ? u"" : FromCodePage(text);
}

/// A key path without a backslash at its end and with single ones in it. Gives false for one that
/// begins with a backslash.
bool ReadPath(LPCSTR argument, std::u16string& path) {
  path = FromArgument(argument);
  if (path.starts_with(u'\\')) return false;
  const auto isRepeated = [](char16_t left, char16_t right) {
    return left == u'\\' && right == u'\\';
  };
  path.erase(std::unique(path.begin(), path.end(), isRepeated), path.end());
  if (path.ends_with(u'\\')) path.pop_back();
  return true;
}

bool IsCreatable(std::u16string_view path) {
  if (std::count(path.begin(), path.end(), u'\\') >= kDeepestKey) return false;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find(u'\\'), path.size());
    if (end > kLongestKeyName) return false;
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return true;
}

/// The data as the A calls give it: text in the code page.
std::string BytesForCaller(std::string_view data) {
  if (const auto text = WrittenText(data)) return ToCodePage(*text);
  ValueData stored = DecodeData(data);
  return IsTextType(stored.type) ? ToCodePage(UnitsOf(stored.bytes)) : std::move(stored.bytes);
}

/// The size of those bytes, where it is known without making them.
std::optional<DWORD> SizeForCaller(std::string_view data, DWORD type) {
  if (!IsTextType(type)) return static_cast<DWORD>(DataSize(data));
  if (!IsSingleByteCodePage()) return std::nullopt;
  return static_cast<DWORD>(DataSize(data) / 2);
}

ValueData DataFromCaller(DWORD type, std::string_view bytes) {
  return {type, IsTextType(type) ? BytesOf(FromCodePage(bytes)) : std::string(bytes)};
}

/// Hands bytes to a caller under the rules that hold for all calls: no buffer asks for the size.
LSTATUS GiveBytes(std::string_view bytes, BYTE* buffer, DWORD& size) {
  const DWORD room = std::exchange(size, static_cast<DWORD>(bytes.size()));
  if (buffer == nullptr) return ERROR_SUCCESS;
  if (room < bytes.size()) return ERROR_MORE_DATA;
  if (!bytes.empty()) std::memcpy(buffer, bytes.data(), bytes.size());
  return ERROR_SUCCESS;
}

/// Hands data to a caller of an A call. An unterminated text gets a NUL where there is room for
/// one.
LSTATUS GiveData(std::string_view data, DWORD* type, BYTE* buffer, DWORD* size) {
  const DWORD ownType = DataType(data);
  if (type != nullptr) *type = ownType;
  if (size == nullptr) return ERROR_SUCCESS;
  const DWORD room = *size;
  if (buffer == nullptr || room == 0) {
    // Asked for the size only.
    if (const auto needed = SizeForCaller(data, ownType)) {
      *size = *needed;
      return buffer == nullptr || *needed == 0 ? ERROR_SUCCESS : ERROR_MORE_DATA;
    }
  }
  const std::string bytes = BytesForCaller(data);
  const LSTATUS status = GiveBytes(bytes, buffer, *size);
  const bool isTerminated = !IsTextType(ownType) || bytes.empty() || bytes.back() == '\0';
  if (status == ERROR_SUCCESS && buffer != nullptr && !isTerminated && room > bytes.size())
    buffer[bytes.size()] = 0;
  return status;
}

/// The values of an open key, or why there are none to be had.
struct OpenValues {
  LSTATUS status = ERROR_SUCCESS;
  OpenKey* key = nullptr;
  KeyId id = kRootKey;
  KeyValues* values = nullptr;
};

OpenValues ValuesOf(HKEY handle, REGSAM rights) {
  OpenKey* key = RegistryWorld::Instance().key(handle);
  if (key == nullptr) return {ERROR_INVALID_HANDLE};
  if (!key->allows(rights)) return {ERROR_ACCESS_DENIED};
  const auto found = key->find();
  if (!found) return {ERROR_KEY_DELETED};
  return {ERROR_SUCCESS, key, *found, &key->hive().image().values(*found)};
}

OpenValues ValuesForChange(HKEY handle) {
  OpenValues open = ValuesOf(handle, KEY_SET_VALUE);
  if (open.status == ERROR_SUCCESS) open.status = open.key->hive().mayChange();
  return open;
}

LSTATUS SetValue(HKEY handle, const std::u16string& name, const ValueData& data) {
  const OpenValues open = ValuesForChange(handle);
  if (open.status != ERROR_SUCCESS) return open.status;
  if (name.size() > kLongestValueName) return ERROR_INVALID_PARAMETER;
  open.values->set(name, data);
  open.key->hive().noteChange();
  return ERROR_SUCCESS;
}

/// Opens a key, creating it if `isCreating`; says in `isNew` whether it did.
LSTATUS Open(HKEY root, LPCSTR path, REGSAM rights, bool isCreating, HKEY* key, bool& isNew) {
  if (key == nullptr) return ERROR_INVALID_PARAMETER;
  *key = nullptr;
  RegistryWorld& world = RegistryWorld::Instance();
  const OpenKey* parent = world.key(root);
  if (parent == nullptr) return ERROR_INVALID_HANDLE;
  std::u16string relative;
  if (!ReadPath(path, relative)) return ERROR_BAD_PATHNAME;
  auto place = world.locate(*parent, std::move(relative));
  if (!place) return ERROR_FILE_NOT_FOUND;
  Hive& hive = *place->hive;
  auto found = hive.image().find(place->path);
  isNew = !found;
  if (isNew && !isCreating) return ERROR_FILE_NOT_FOUND;
  if (isNew && !IsCreatable(place->path)) return ERROR_INVALID_PARAMETER;
  if (isNew || (rights & kChangingRights) != 0) {
    const LSTATUS status = hive.mayChange();
    if (status != ERROR_SUCCESS) return status;
  }
  if (isNew) {
    found = hive.image().create(place->path);
    hive.noteChange();
  }
  *key = world.add(std::move(*place), rights, *found);
  return ERROR_SUCCESS;
}

LSTATUS GiveClass(const std::u16string& name, LPSTR buffer, DWORD* size) {
  if (size == nullptr) return buffer == nullptr ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
  const std::string bytes = ToCodePage(name);
  const DWORD room = std::exchange(*size, static_cast<DWORD>(bytes.size()));
  if (buffer == nullptr) return ERROR_SUCCESS;
  if (room <= bytes.size()) return ERROR_MORE_DATA;
  std::memcpy(buffer, bytes.c_str(), bytes.size() + 1);
  return ERROR_SUCCESS;
}

/// For the results that a caller may leave out.
void Give(DWORD* result, std::size_t number) {
  if (result != nullptr) *result = static_cast<DWORD>(number);
}

}  // namespace
}  // namespace torvane::posix

using namespace torvane::posix;

LSTATUS RegOpenKeyExA(HKEY root, LPCSTR path, DWORD, REGSAM rights, HKEY* key) {
  bool isNew = false;
  return Open(root, path, rights, false, key, isNew);
}

LSTATUS RegCreateKeyExA(HKEY root, LPCSTR path, DWORD, LPSTR, DWORD, REGSAM rights,
                        const SECURITY_ATTRIBUTES*, HKEY* key, DWORD* disposition) {
  bool isNew = false;
  const LSTATUS status = Open(root, path, rights, true, key, isNew);
  if (status == ERROR_SUCCESS)
    Give(disposition, isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY);
  return status;
}

LSTATUS RegCloseKey(HKEY key) {
  return RegistryWorld::Instance().close(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, DWORD*, DWORD* type, BYTE* data, DWORD* size) {
  if (data != nullptr && size == nullptr) return ERROR_INVALID_PARAMETER;
  const std::u16string wanted = FromArgument(name);
  const OpenValues open = ValuesOf(key, KEY_QUERY_VALUE);
  if (open.status != ERROR_SUCCESS) return open.status;
  const auto value = open.values->find(wanted);
  if (!value) return ERROR_FILE_NOT_FOUND;
  return GiveData(value->data, type, data, size);
}

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, DWORD*, DWORD* type, BYTE* data, DWORD* size) {
  if (data != nullptr && size == nullptr) return ERROR_INVALID_PARAMETER;
  const OpenValues open = ValuesOf(key, KEY_QUERY_VALUE);
  if (open.status != ERROR_SUCCESS) return open.status;
  const auto value = open.values->find(name == nullptr ? u"" : name);
  if (!value) return ERROR_FILE_NOT_FOUND;
  const ValueData stored = DecodeData(value->data);
  if (type != nullptr) *type = stored.type;
  return size == nullptr ? ERROR_SUCCESS : GiveBytes(stored.bytes, data, *size);
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
  if (data == nullptr && size != 0) return ERROR_INVALID_PARAMETER;
  const char* const bytes = reinterpret_cast<const char*>(data);
  return SetValue(key, FromArgument(name), DataFromCaller(type, {bytes, size}));
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
  if (data == nullptr && size != 0) return ERROR_INVALID_PARAMETER;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  return SetValue(key, name == nullptr ? u"" : name, {type, std::string(bytes)});
}

LSTATUS RegDeleteValueA(HKEY key, LPCSTR name) {
  const std::u16string wanted = FromArgument(name);
  const OpenValues open = ValuesForChange(key);
  if (open.status != ERROR_SUCCESS) return open.status;
  if (!open.values->erase(wanted)) return ERROR_FILE_NOT_FOUND;
  open.key->hive().noteChange();
  return ERROR_SUCCESS;
}

LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, DWORD* nameSize, DWORD*, DWORD* type,
                      BYTE* data, DWORD* dataSize) {
  if (name == nullptr || nameSize == nullptr || (data != nullptr && dataSize == nullptr))
    return ERROR_INVALID_PARAMETER;
  const OpenValues open = ValuesOf(key, KEY_QUERY_VALUE);
  if (open.status != ERROR_SUCCESS) return open.status;
  const auto value = open.values->at(index);
  if (!value) return ERROR_NO_MORE_ITEMS;
  if (type != nullptr) *type = DataType(value->data);
  const std::string bytes = ToCodePage(value->decodedName());
  if (bytes.size() >= *nameSize) return ERROR_MORE_DATA;
  if (dataSize != nullptr) {
    const LSTATUS status = GiveData(value->data, nullptr, data, dataSize);
    if (status != ERROR_SUCCESS) return status;
  }
  std::memcpy(name, bytes.c_str(), bytes.size() + 1);
  *nameSize = static_cast<DWORD>(bytes.size());
  return ERROR_SUCCESS;
}

LSTATUS RegQueryInfoKeyA(HKEY key, LPSTR className, DWORD* classSize, DWORD*, DWORD* subKeys,
                         DWORD* longestSubKey, DWORD* longestClass, DWORD* values,
                         DWORD* longestValueName, DWORD* longestValue, DWORD* securitySize,
                         FILETIME* lastWrite) {
  const OpenValues open = ValuesOf(key, KEY_QUERY_VALUE);
  if (open.status != ERROR_SUCCESS) return open.status;
  const KeySummary summary = open.key->hive().image().summary(open.id);
  Give(subKeys, summary.subkeys);
  Give(longestSubKey, summary.longestSubkey);
  Give(longestClass, summary.longestClass);
  Give(values, open.values->count());
  if (longestValueName != nullptr) Give(longestValueName, open.values->longestName());
  if (longestValue != nullptr) Give(longestValue, open.values->longestData());
  Give(securitySize, 0);
  if (lastWrite != nullptr) {
    const std::uint64_t time = open.values->time();
    *lastWrite = {static_cast<DWORD>(time & 0xFFFFFFFFU), static_cast<DWORD>(time >> 32U)};
  }
  return GiveClass(
      className == nullptr && classSize == nullptr ? std::u16string() : open.values->className(),
      className, classSize);
}
