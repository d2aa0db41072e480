// A Windows world of a test's own: on Linux a fresh Wine prefix, on Windows a scratch folder and
// emptied keys of the test prefix's registry.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "storage/text.h"
#include "support/wide.h"

namespace torvane::testing {

/// A value as a test writes it down: name and text, stored as REG_SZ.
using TextValue = std::pair<std::string, std::string>;

/// The base of tests that need a registry or files. Text in bytes is in UTF-8.
class ScratchWorld : public ::testing::Test {
 protected:
  ScratchWorld();
  ~ScratchWorld() override;

  /// The Windows path of an empty folder of this test, without a closing backslash.
  const std::string& Folder() const { return folder_; }
  /// Makes a file below Folder() with the folders above it; gives its Windows path.
  std::string MakeFile(std::string_view relativePath, std::string_view bytes = {});
  std::string MakeFolder(std::string_view relativePath);
  /// The host's path of a Windows path in this world, to look at a file behind the program's back.
  std::filesystem::path Host(std::string_view windowsPath) const;
  std::string FileBytes(std::string_view windowsPath) const;
  /// A file in the Windows folder, removed at the test's end.
  void MakeWindowsFile(const std::string& name, std::string_view bytes);
  /// What the file holds now, with everything written that waits to be written.
  std::string WindowsFileBytes(const std::string& name) const;

  /// Empties a key below HKEY_CURRENT_USER, now and at the test's end, with its subkeys.
  void UseKey(const std::string& path);
  /// UseKey, then writes the values.
  void MakeKey(const std::string& path, const std::vector<TextValue>& values);
  void SetValue(const std::string& path, const std::string& name, unsigned type,
                std::string_view bytes);
  /// Name and bytes of every value; text has its closing NUL.
  static std::map<std::string, std::string> Values(const std::string& path);
  /// Name and text of every value, closing NUL taken off.
  static std::map<std::string, std::string> Texts(const std::string& path);
  /// As many entries in a store as a test has the time to write and to delete one by one.
  static const int kManyValues;
  /// Whether what a section of an INI file gets back it has as the bytes that it had.
  static const bool kGivesBackBytes;
  /// As many generated lists as a test has the time for.
  static const std::uint32_t kManyLists;
  /// The host's folder of the user's own files.
  std::filesystem::path UserFolder() const { return scratch_ / "config" / kUserFolder; }
  /// Lets the platform write what it holds back.
  static void WriteBack();

 private:
  void RemoveKey(const std::string& path);
  static const char* const kUserFolder;
  std::string folder_;
  std::filesystem::path hostRoot_;  ///< the host's folder of drive C:
  std::filesystem::path scratch_;   ///< removed at the end
  std::vector<std::string> keys_;
  std::vector<std::filesystem::path> windowsFiles_;
};

}  // namespace torvane::testing
