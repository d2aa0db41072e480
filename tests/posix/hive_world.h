// A scratch prefix whose hive files a test writes and reads behind the layer's back.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "platform/posix/disk/write_back.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {

using namespace std::string_literals;

inline const std::string kHeader = "WINE REGISTRY Version 2\n;; comment\n\n#arch=win64\n";

/// A variable of the environment, empty where it isn't set.
inline std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

class HiveWorld : public ScratchWorld {
 protected:
  static std::filesystem::path Prefix() { return Variable("WINEPREFIX"); }
  static std::filesystem::path UserHive() { return Prefix() / "user.reg"; }

  static void Write(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
  }
  /// The lock file that a Wine server of this prefix keeps below `root`, its folder made.
  static std::filesystem::path ServerLock(const std::filesystem::path& root) {
    struct stat status {};
    EXPECT_EQ(stat(Prefix().c_str(), &status), 0);
    std::ostringstream name;
    name << "server-" << std::hex << status.st_dev << '-' << status.st_ino;
    std::filesystem::create_directories(root / name.str());
    return root / name.str() / "lock";
  }
  /// Replaces a file as Wine does: a new one, renamed.
  static void Replace(const std::filesystem::path& file, std::string_view bytes) {
    Write(file.string() + ".wine", bytes);
    std::filesystem::rename(file.string() + ".wine", file);
  }
  static std::string Read(const std::filesystem::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
  }

  static LSTATUS Set(const std::string& path, const std::string& name, const std::string& text) {
    return SetBytes(path, name, REG_SZ, StoredData(REG_SZ, text + '\0'));
  }
  static LSTATUS SetBytes(const std::string& path, const std::string& name, DWORD type,
                          std::string_view bytes) {
    HKEY key = nullptr;
    LSTATUS status =
        RegCreateKeyExW(HKEY_CURRENT_USER, W(path), 0, nullptr, 0, 0x3F, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) return status;
    status = RegSetValueExW(key, W(name), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                            static_cast<DWORD>(bytes.size()));
    RegCloseKey(key);
    return status;
  }
  static LSTATUS Delete(const std::string& path, const std::string& name) {
    HKEY key = nullptr;
    LSTATUS status = RegOpenKeyExW(HKEY_CURRENT_USER, W(path), 0, 0x3F, &key);
    if (status != ERROR_SUCCESS) return status;
    status = RegDeleteValueW(key, W(name));
    RegCloseKey(key);
    return status;
  }
  /// Type and bytes of a value; nothing where it can't be read.
  static std::optional<std::pair<DWORD, std::string>> GetBytes(const std::string& path,
                                                               const std::string& name,
                                                               HKEY root = HKEY_CURRENT_USER) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, W(path), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
      return std::nullopt;
    DWORD type = 0;
    std::string bytes(1 << 17, '\0');
    auto size = static_cast<DWORD>(bytes.size());
    const LSTATUS status = RegQueryValueExW(key, W(name), nullptr, &type,
                                            reinterpret_cast<BYTE*>(bytes.data()), &size);
    RegCloseKey(key);
    if (status != ERROR_SUCCESS) return std::nullopt;
    bytes.resize(size);
    return std::pair(type, bytes);
  }
  /// A value's data, its text in UTF-8.
  static std::optional<std::string> Get(const std::string& path, const std::string& name,
                                        DWORD* type = nullptr, HKEY root = HKEY_CURRENT_USER) {
    const auto value = GetBytes(path, name, root);
    if (!value) return std::nullopt;
    if (type != nullptr) *type = value->first;
    return ShownData(value->first, value->second);
  }
  static void Save() {
    for (const auto& failure : posix::WriteBackChanges())
      ADD_FAILURE() << failure.path << ": " << failure.reason;
  }
};

}  // namespace torvane::testing
