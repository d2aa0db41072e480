#include "support/scratch_world.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "platform/winapi.h"

namespace torvane::testing {

std::string ScratchWorld::MakeFile(std::string_view relativePath, std::string_view bytes) {
  std::string path = folder_ + "\\" + std::string(relativePath);
  const std::filesystem::path host = Host(path);
  std::filesystem::create_directories(host.parent_path());
  std::ofstream(host, std::ios::binary) << bytes;
  return path;
}

std::string ScratchWorld::MakeFolder(std::string_view relativePath) {
  std::string path = folder_ + "\\" + std::string(relativePath);
  std::filesystem::create_directories(Host(path));
  return path;
}

std::filesystem::path ScratchWorld::Host(std::string_view windowsPath) const {
  std::string below(windowsPath.substr(std::min<std::size_t>(3, windowsPath.size())));
  std::replace(below.begin(), below.end(), '\\', '/');
  return hostRoot_ / std::filesystem::path(Utf16(below));
}

std::string ScratchWorld::FileBytes(std::string_view windowsPath) const {
  std::ostringstream bytes;
  bytes << std::ifstream(Host(windowsPath), std::ios::binary).rdbuf();
  return bytes.str();
}

void ScratchWorld::MakeWindowsFile(const std::string& name, std::string_view bytes) {
  windowsFiles_.push_back(hostRoot_ / "windows" / name);
  std::ofstream(windowsFiles_.back(), std::ios::binary) << bytes;
}

std::string ScratchWorld::WindowsFileBytes(const std::string& name) const {
  WriteBack();
  return FileBytes("C:\\windows\\" + name);
}

void ScratchWorld::UseKey(const std::string& path) {
  RemoveKey(path);
  keys_.push_back(path);
}

void ScratchWorld::MakeKey(const std::string& path, const std::vector<TextValue>& values) {
  UseKey(path);
  for (const auto& [name, text] : values) {
    SetValue(path, name, REG_SZ, {text.c_str(), text.size() + 1});
  }
}

void ScratchWorld::SetValue(const std::string& path, const std::string& name, unsigned type,
                            std::string_view bytes) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, W(path), 0, nullptr, 0,
                            KEY_SET_VALUE | KEY_QUERY_VALUE, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  const std::string data = StoredData(type, bytes);
  EXPECT_EQ(RegSetValueExW(key, W(name), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                           static_cast<DWORD>(data.size())),
            ERROR_SUCCESS);
  RegCloseKey(key);
}

std::map<std::string, std::string> ScratchWorld::Values(const std::string& path) {
  std::map<std::string, std::string> values;
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, W(path), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) {
    return values;
  }
  Text name(16384, u'\0');
  std::string data(1 << 16, '\0');
  for (DWORD index = 0;; ++index) {
    auto nameSize = static_cast<DWORD>(name.size());
    auto dataSize = static_cast<DWORD>(data.size());
    DWORD type = 0;
    if (RegEnumValueW(key, index, WideBuffer(name), &nameSize, nullptr, &type,
                      reinterpret_cast<BYTE*>(data.data()), &dataSize) != ERROR_SUCCESS) {
      break;
    }
    values[Utf8(TextView(name).substr(0, nameSize))] =
        ShownData(type, std::string_view(data).substr(0, dataSize));
  }
  RegCloseKey(key);
  return values;
}

std::map<std::string, std::string> ScratchWorld::Texts(const std::string& path) {
  auto values = Values(path);
  for (auto& [name, data] : values) {
    if (data.ends_with('\0')) data.pop_back();
  }
  return values;
}

}  // namespace torvane::testing
