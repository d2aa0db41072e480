// The registry's calls over the prefix's hives: handles, rights and sizes. What
// changes a key asks its hive first whether it may be changed, so that a refused change leaves
// nothing behind; see HiveRole for which may.
#include "platform/posix/registry/registry.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "platform/posix/registry/registry_world.h"
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

std::u16string_view Given(LPCWSTR text) {
  return text == nullptr ? std::u16string_view() : text;
}

/// A key path without a backslash at its end and with single ones in it. Gives false for one that
/// begins with a backslash.
bool ReadPath(std::u16string_view argument, std::u16string& path) {
  path = argument;
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

/// Hands bytes to a caller under the rules that hold for all calls: no buffer asks for the size.
LSTATUS GiveBytes(std::string_view bytes, BYTE* buffer, DWORD& size) {
  const DWORD room = std::exchange(size, static_cast<DWORD>(bytes.size()));
  if (buffer == nullptr) return ERROR_SUCCESS;
  if (room < bytes.size()) return ERROR_MORE_DATA;
  if (!bytes.empty()) std::memcpy(buffer, bytes.data(), bytes.size());
  return ERROR_SUCCESS;
}

/// Hands a value's type and data to a caller. A text without a NUL gets one where there is room.
LSTATUS GiveValue(std::string_view data, DWORD* type, BYTE* buffer, DWORD* size) {
  const ValueData stored = DecodeData(data);
  if (type != nullptr) *type = stored.type;
  if (size == nullptr) return ERROR_SUCCESS;
  const DWORD room = *size;
  const LSTATUS status = GiveBytes(stored.bytes, buffer, *size);
  const std::size_t length = stored.bytes.size();
  const bool isRead = status == ERROR_SUCCESS && buffer != nullptr && length >= sizeof(WCHAR);
  if (isRead && IsTextType(stored.type) && room - length >= sizeof(WCHAR) &&
      (buffer[length - 2] != 0 || buffer[length - 1] != 0)) {
    buffer[length] = buffer[length + 1] = 0;
  }
  return status;
}

/// Hands a name to a caller with its NUL; `size` counts units, with the NUL going in only.
LSTATUS GiveName(std::u16string_view name, LPWSTR buffer, DWORD& size) {
  if (size <= name.size()) return ERROR_MORE_DATA;
  name.copy(buffer, name.size());
  buffer[name.size()] = u'\0';
  size = static_cast<DWORD>(name.size());
  return ERROR_SUCCESS;
}

FILETIME FileTimeOf(std::uint64_t time) {
  return {static_cast<DWORD>(time & 0xFFFFFFFFU), static_cast<DWORD>(time >> 32U)};
}

/// An open key, with its values where these are asked for, or why there is none to be had.
struct OpenValues {
  LSTATUS status = ERROR_SUCCESS;
  OpenKey* key = nullptr;
  KeyId id = kRootKey;
  KeyValues* values = nullptr;
};

OpenValues FindOpen(HKEY handle, REGSAM rights) {
  OpenKey* key = RegistryWorld::Instance().key(handle);
  if (key == nullptr) return {ERROR_INVALID_HANDLE};
  if (!key->allows(rights)) return {ERROR_ACCESS_DENIED};
  const auto found = key->find();
  if (!found) return {ERROR_KEY_DELETED};
  return {ERROR_SUCCESS, key, *found};
}

OpenValues ValuesOf(HKEY handle, REGSAM rights) {
  OpenValues open = FindOpen(handle, rights);
  if (open.status == ERROR_SUCCESS) open.values = &open.key->hive().image().values(open.id);
  return open;
}

OpenValues ValuesForChange(HKEY handle) {
  OpenValues open = ValuesOf(handle, KEY_SET_VALUE);
  if (open.status == ERROR_SUCCESS) open.status = open.key->hive().mayChange();
  return open;
}

LSTATUS SetValue(HKEY handle, std::u16string_view name, const ValueData& data) {
  const OpenValues open = ValuesForChange(handle);
  if (open.status != ERROR_SUCCESS) return open.status;
  if (name.size() > kLongestValueName) return ERROR_INVALID_PARAMETER;
  open.values->set(name, data);
  open.key->hive().noteChange();
  return ERROR_SUCCESS;
}

/// Opens a key, creating it if `isCreating`; says in `isNew` whether it did.
LSTATUS Open(HKEY root, std::u16string_view path, REGSAM rights, bool isCreating, HKEY* key,
             bool& isNew) {
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

LSTATUS GiveClass(const std::u16string& name, LPWSTR buffer, DWORD* size) {
  if (size == nullptr) return buffer == nullptr ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
  if (buffer != nullptr) return GiveName(name, buffer, *size);
  *size = static_cast<DWORD>(name.size());
  return ERROR_SUCCESS;
}

/// For the results that a caller may leave out.
void Give(DWORD* result, std::size_t number) {
  if (result != nullptr) *result = static_cast<DWORD>(number);
}

}  // namespace
}  // namespace torvane::posix

using namespace torvane::posix;

LSTATUS RegOpenKeyExW(HKEY root, LPCWSTR path, DWORD, REGSAM rights, HKEY* key) {
  bool isNew = false;
  return Open(root, Given(path), rights, false, key, isNew);
}

LSTATUS RegCreateKeyExW(HKEY root, LPCWSTR path, DWORD, LPWSTR, DWORD, REGSAM rights,
                        const SECURITY_ATTRIBUTES*, HKEY* key, DWORD* disposition) {
  bool isNew = false;
  const LSTATUS status = Open(root, Given(path), rights, true, key, isNew);
  if (status == ERROR_SUCCESS)
    Give(disposition, isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY);
  return status;
}

LSTATUS RegCloseKey(HKEY key) {
  return RegistryWorld::Instance().close(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, DWORD*, DWORD* type, BYTE* data, DWORD* size) {
  if (data != nullptr && size == nullptr) return ERROR_INVALID_PARAMETER;
  const OpenValues open = ValuesOf(key, KEY_QUERY_VALUE);
  if (open.status != ERROR_SUCCESS) return open.status;
  const auto value = open.values->find(Given(name));
  return value ? GiveValue(value->data, type, data, size) : ERROR_FILE_NOT_FOUND;
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR name) {
  const OpenValues open = ValuesForChange(key);
  if (open.status != ERROR_SUCCESS) return open.status;
  if (!open.values->erase(Given(name))) return ERROR_FILE_NOT_FOUND;
  open.key->hive().noteChange();
  return ERROR_SUCCESS;
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameSize, DWORD*, DWORD* type,
                      BYTE* data, DWORD* dataSize) {
  if (name == nullptr || nameSize == nullptr || (data != nullptr && dataSize == nullptr))
    return ERROR_INVALID_PARAMETER;
  const OpenValues open = ValuesOf(key, KEY_QUERY_VALUE);
  if (open.status != ERROR_SUCCESS) return open.status;
  const auto value = open.values->at(index);
  if (!value) return ERROR_NO_MORE_ITEMS;
  // The data's type and size are told also where a buffer is too small.
  const LSTATUS status = GiveValue(value->data, type, data, dataSize);
  const LSTATUS nameStatus = GiveName(value->decodedName(), name, *nameSize);
  return nameStatus != ERROR_SUCCESS ? nameStatus : status;
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
  if (data == nullptr && size != 0) return ERROR_INVALID_PARAMETER;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  return SetValue(key, Given(name), {type, std::string(bytes)});
}

LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classSize, DWORD*, DWORD* subKeys,
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
  if (lastWrite != nullptr) *lastWrite = FileTimeOf(open.values->time());
  if (className == nullptr && classSize == nullptr) return ERROR_SUCCESS;
  return GiveClass(open.values->className(), className, classSize);
}
