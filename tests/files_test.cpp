// Conformance of searching, making and deleting files: holds on Windows and on the layer.
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
    WIN32_FIND_DATAW data{};
    const HANDLE search = FindFirstFileW(W(path), &data);
    if (search == INVALID_HANDLE_VALUE) return "-";
    EXPECT_EQ(FindClose(search), TRUE);
    return Utf8(TextOf(data.cFileName));
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
  WIN32_FIND_DATAW data{};
  FindClose(FindFirstFileW(W(folder), &data));
  EXPECT_NE(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY, 0U);
  FindClose(FindFirstFileW(W(file), &data));
  EXPECT_EQ(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY, 0U);
}

TEST_F(FilesTest, SeesAtOnceWhatHasChanged) {
  for (int round = 0; round < 20; ++round) {
    const std::string name = "Round" + std::to_string(round);
    const std::string other = Folder() + "\\ROUND" + std::to_string(round);
    EXPECT_EQ(Find(other), "-");
    MakeFile(name);
    EXPECT_EQ(Find(other), name);
    EXPECT_EQ(DeleteFileW(W(other)), TRUE);
    EXPECT_EQ(Find(other), "-");
  }
}

TEST_F(FilesTest, MakesNewFilesOnly) {
  const std::string path = Folder() + "\\New.bin";
  const HANDLE file = CreateFileW(W(path), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
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
    EXPECT_EQ(CreateFileW(W(other), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr),
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
    EXPECT_EQ(DeleteFileW(W(path)), FALSE) << path;
  }
  EXPECT_TRUE(std::filesystem::exists(Host(file)));
  EXPECT_EQ(DeleteFileW(W(Folder() + "\\SOME FILE.TXT")), TRUE);
  EXPECT_FALSE(std::filesystem::exists(Host(file)));
}

TEST_F(FilesTest, TemporaryNamesAreNewFiles) {
  WCHAR unused[4];
  const std::string folder =
      Utf8(TextOfCall([](WCHAR* buffer, DWORD size) { return GetTempPathW(size, buffer); }));
  ASSERT_TRUE(folder.size() > 3 && folder.ends_with('\\')) << folder;
  EXPECT_EQ(GetTempPathW(3, unused), Utf16(folder).size() + 1);
  for (const std::string& place : {folder, Folder(), MakeFolder("\u0418\u0432\u0430\u043D")}) {
    Text name(MAX_PATH, u'\0');
    EXPECT_NE(GetTempFileNameW(W(place), W("TVlong"), 0, WideBuffer(name)), 0U);
    const std::string path = Utf8(StripAtNull(name));
    const std::string start = place.ends_with('\\') ? place + "TVl" : place + "\\TVl";
    EXPECT_TRUE(path.starts_with(start)) << path;
    EXPECT_TRUE(path.ends_with(".tmp")) << path;
    EXPECT_NE(Find(path), "-");
    EXPECT_EQ(DeleteFileW(W(path)), TRUE);
  }
  Text name(MAX_PATH, u'\0');
  for (const std::string& place : {Folder() + "\\none", Folder() + std::string(300, 'x')})
    EXPECT_EQ(GetTempFileNameW(W(place), W("TV"), 0, WideBuffer(name)), 0U);
}

TEST_F(FilesTest, NamesTheSystemsFolders) {
  WCHAR buffer[MAX_PATH];
  EXPECT_EQ(GetSystemDirectoryW(buffer, MAX_PATH), 19U);
  EXPECT_EQ(Text(TextOf(buffer)), u"C:\\windows\\system32");
  EXPECT_EQ(GetWindowsDirectoryW(buffer, 11), 10U);
  EXPECT_EQ(Text(TextOf(buffer)), u"C:\\windows");
  EXPECT_EQ(GetWindowsDirectoryW(buffer, 10), 11U);
}

}  // namespace
}  // namespace torvane::testing
