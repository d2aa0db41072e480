// Conformance of searching, making and deleting files: holds on Windows and on the layer.
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

class FilesTest : public ScratchWorld {
 protected:
  /// The name that a search finds first, "-" for none.
  static std::string Find(const std::string& path) {
    WIN32_FIND_DATAA data{};
    const HANDLE search = FindFirstFileA(path.c_str(), &data);
    if (search == INVALID_HANDLE_VALUE) return "-";
    EXPECT_EQ(FindClose(search), TRUE);
    return static_cast<const char*>(data.cFileName);
  }
};

TEST_F(FilesTest, FindsByNameAndPattern) {
  MakeFile("Sub Folder\\Report.txt", "12345");
  MakeFile("Sub Folder\\.hidden");
  MakeFile("Sub Folder\\zeta.tar.gz");
  MakeFile("Sub Folder\\plain");
  struct Row {
    const char* path;  ///< behind the scratch folder
    const char* name;
  };
  constexpr Row kRows[] = {
      {"", "scratch"},
      {"\\Sub Folder", "Sub Folder"},
      {"\\SUB FOLDER\\REPORT.TXT", "Report.txt"},
      {"/sub folder/report.txt", "Report.txt"},
      {"\\Sub Folder\\..\\Sub Folder\\.\\plain", "plain"},
      {"\\Sub Folder\\\\plain", "plain"},
      {"\\Sub Folder\\plain. ", "plain"},
      {"\\Sub Folder\\.hidden", ".hidden"},
      {"\\Sub Folder\\*", "."},
      {"\\Sub Folder\\*.*", "."},
      {"\\Sub Folder\\r*.*", "Report.txt"},
      {"\\Sub Folder\\?eport.t?t", "Report.txt"},
      {"\\Sub Folder\\z*r*", "zeta.tar.gz"},
      {"\\Sub Folder\\missing", "-"},
      {"\\Sub Folder\\", "-"},
      {"\\Sub Folder\\plain\\", "-"},
      {"\\Sub Folder\\plain\\x", "-"},
      {"\\S?b Folder\\plain", "-"},
      {"\\missing\\plain", "-"},
      {"\\Sub Folder\\pl<in", "-"},
      {"\\Sub Folder\\plain:stream", "-"},
      {"\\Sub Folder\\nul", "nul"},
      {"\\missing\\nul", "-"},
  };
  for (const Row& row : kRows) {
    const std::string name = Find(Folder() + row.path);
    const bool own = std::string_view(row.path).empty();
    EXPECT_EQ(name, own ? Folder().substr(3) : row.name) << row.path;
  }
  for (const char* nowhere :
       {"C:\\", "", "   ", "\\\\torvane-none\\share\\x", "Q:\\x", "torvane-none.txt"}) {
    EXPECT_EQ(Find(nowhere), "-") << nowhere;
  }
  EXPECT_EQ(Find("\\\\?\\" + Folder() + "\\Sub Folder\\plain"), "plain");
  EXPECT_EQ(Find(Folder() + std::string(32'000, 'x')), "-");
}

TEST_F(FilesTest, TellsFoldersFromFiles) {
  const std::string folder = MakeFolder("folder");
  const std::string file = MakeFile("file.bin");
  WIN32_FIND_DATAA data{};
  FindClose(FindFirstFileA(folder.c_str(), &data));
  EXPECT_NE(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY, 0U);
  FindClose(FindFirstFileA(file.c_str(), &data));
  EXPECT_EQ(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY, 0U);
}

TEST_F(FilesTest, SeesAtOnceWhatHasChanged) {
  for (int round = 0; round < 20; ++round) {
    const std::string name = "Round" + std::to_string(round);
    const std::string other = Folder() + "\\ROUND" + std::to_string(round);
    EXPECT_EQ(Find(other), "-");
    MakeFile(name);
    EXPECT_EQ(Find(other), name);
    EXPECT_EQ(DeleteFileA(other.c_str()), TRUE);
    EXPECT_EQ(Find(other), "-");
  }
}

TEST_F(FilesTest, MakesNewFilesOnly) {
  const std::string path = Folder() + "\\New.bin";
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD written = 0;
  EXPECT_EQ(WriteFile(file, "a\0b", 3, &written, nullptr), TRUE);
  EXPECT_EQ(written, 3U);
  EXPECT_EQ(CloseHandle(file), TRUE);
  EXPECT_EQ(FileBytes(path), std::string("a\0b", 3));
  const std::pair<std::string, LONG> refused[] = {{Folder() + "\\NEW.BIN", ERROR_FILE_EXISTS},
                                                  {Folder() + "\\none\\x", ERROR_PATH_NOT_FOUND}};
  for (const auto& [other, error] : refused) {
    SetLastError(0);
    EXPECT_EQ(CreateFileA(other.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(error)) << other;
  }
  EXPECT_EQ(FileBytes(path), std::string("a\0b", 3));
}

TEST_F(FilesTest, DeletesFilesOnly) {
  const std::string file = MakeFile("Some File.txt");
  const std::string folder = MakeFolder("folder");
  for (const std::string& path :
       {folder, file + "x", folder + "\\none\\x", Folder() + "\\some*", file + "\\"}) {
    EXPECT_EQ(DeleteFileA(path.c_str()), FALSE) << path;
  }
  EXPECT_TRUE(std::filesystem::exists(Host(file)));
  EXPECT_EQ(DeleteFileA((Folder() + "\\SOME FILE.TXT").c_str()), TRUE);
  EXPECT_FALSE(std::filesystem::exists(Host(file)));
}

TEST_F(FilesTest, TemporaryNamesAreNewFiles) {
  std::array<char, MAX_PATH> folder{};
  const DWORD length = GetTempPathA(MAX_PATH, folder.data());
  ASSERT_GT(length, 3U);
  EXPECT_EQ(std::string_view(folder.data()).size(), length);
  EXPECT_EQ(folder[length - 1], '\\');
  EXPECT_EQ(GetTempPathA(3, folder.data() + length + 1), length + 1);
  for (const std::string& place : {std::string(folder.data()), Folder()}) {
    std::array<char, MAX_PATH> name{};
    EXPECT_NE(GetTempFileNameA(place.c_str(), "TVlong", 0, name.data()), 0U);
    const std::string path = name.data();
    const std::string start = place.ends_with('\\') ? place + "TVl" : place + "\\TVl";
    EXPECT_TRUE(path.starts_with(start)) << path;
    EXPECT_TRUE(path.ends_with(".tmp")) << path;
    EXPECT_NE(Find(path), "-");
    EXPECT_EQ(DeleteFileA(path.c_str()), TRUE);
  }
  std::array<char, MAX_PATH> name{};
  EXPECT_EQ(GetTempFileNameA((Folder() + "\\none").c_str(), "TV", 0, name.data()), 0U);
}

TEST_F(FilesTest, NamesTheSystemsFolders) {
  std::array<char, MAX_PATH> buffer{};
  EXPECT_EQ(GetSystemDirectoryA(buffer.data(), MAX_PATH), 19U);
  EXPECT_STREQ(buffer.data(), "C:\\windows\\system32");
  EXPECT_EQ(GetWindowsDirectoryA(buffer.data(), 11), 10U);
  EXPECT_STREQ(buffer.data(), "C:\\windows");
  EXPECT_EQ(GetWindowsDirectoryA(buffer.data(), 10), 11U);
}

}  // namespace
}  // namespace torvane::testing
