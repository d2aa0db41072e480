#include "platform/posix/paths/drive_paths.h"

#include <sys/stat.h>

#include <array>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "platform/posix/paths/folder_cache.h"
#include "platform/posix/paths/windows_path.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;
using posix::FindHostPath;
using posix::FitsPattern;
using posix::FolderReadings;
using posix::WindowsPath;

class DrivePathsTest : public ScratchWorld {
 protected:
  void MapDrive(const char* name, const fs::path& target) const {
    fs::create_directory_symlink(target, posix::PrefixRoot() / "dosdevices" / name);
  }
};

TEST_F(DrivePathsTest, LeadsThroughDosdevicesAndTheUnixForm) {
  MakeFile("Data\\A.txt");
  const fs::path data = Host(Folder() + "\\Data");
  MapDrive("e:", data);
  MapDrive("f:", data / "none");
  struct Row {
    std::u16string path;
    std::optional<fs::path> host;
  };
  const fs::path drives = posix::PrefixRoot() / "dosdevices";
  const std::vector<Row> rows = {
      {u"e:\\a.TXT", drives / "e:/A.txt"},
      {u"E:", drives / "e:"},
      {u"e:\\", drives / "e:"},
      {u"c:\\scratch\\data\\", drives / "c:/scratch/Data"},
      {u"c:\\scratch\\data\\a.txt\\", std::nullopt},
      {u"f:\\a.txt", std::nullopt},
      {u"g:\\a.txt", std::nullopt},
      {u"\\\\server\\share\\a.txt", std::nullopt},
      {u"\\\\?\\UNC\\server\\a.txt", std::nullopt},
      {u"\\\\?\\unix" + Utf16(data.string()) + u"\\A.txt", std::nullopt},
      {u"\\\\?\\unix\\ETC\\passwd", "/etc/passwd"},
      {u"\\\\?\\unix\\etc\\..\\etc\\passwd", std::nullopt},
      {u"\\\\?\\unix\\", "/"},
      {u"c:\\scratch\\data\\nul", std::nullopt},
  };
  for (const Row& row : rows) EXPECT_EQ(FindHostPath(row.path), row.host) << Utf8(row.path);
}

TEST_F(DrivePathsTest, ExactNamesGoAheadOfThoseThatDifferInCase) {
  MakeFile("Same.txt", "1");
  MakeFile("same.txt", "22");
  MakeFile("\u00C4rger.txt");
  const auto find = [&](std::u16string_view name) {
    return FindHostPath(u"C:\\scratch\\" + std::u16string(name)).value_or("").filename();
  };
  EXPECT_EQ(find(u"same.txt"), "same.txt");
  EXPECT_EQ(find(u"Same.txt"), "Same.txt");
  EXPECT_EQ(find(u"SAME.TXT"), "Same.txt");
  EXPECT_EQ(find(u"\u00E4RGER.txt"), fs::path(u"\u00C4rger.txt"));
}

TEST_F(DrivePathsTest, AListingKnowsShortNames) {
  const posix::FolderListing listing(
      {{"B", u"a.txtx"}, {"A", u"a~~~~zrd.txt"}, {"C", u"long name.t"}});
  EXPECT_EQ(listing.find(u"LONG~1EX.T")->hostName, "C");
  EXPECT_EQ(listing.find(u"A~~~~ZRD.TXT")->hostName, "A");
  EXPECT_EQ(listing.find(u"LONG~1EY.T"), nullptr);
}

TEST_F(DrivePathsTest, TheDeepestDriveNamesAHostFile) {
  MakeFile("Data\\A.txt");
  const fs::path data = Host(Folder() + "\\Data");
  EXPECT_EQ(WindowsPath(data / "A.txt"), u"C:\\scratch\\Data\\A.txt");
  MapDrive("x:", data);
  EXPECT_EQ(WindowsPath(data / "A.txt"), u"X:\\A.txt");
  EXPECT_EQ(WindowsPath(data), u"X:\\");
  EXPECT_EQ(WindowsPath("/etc/passwd"), std::nullopt);
  MapDrive("z:", "/");
  EXPECT_EQ(WindowsPath("/etc/passwd"), u"Z:\\etc\\passwd");
  std::ofstream(data / "a:b").put('x');
  EXPECT_EQ(WindowsPath(data / "a:b"), std::nullopt);
}

TEST_F(DrivePathsTest, ABareDriveIsItsRootFolder) {
  WIN32_FIND_DATAW data{};
  EXPECT_NE(FindFirstFileW(W("C:"), &data), INVALID_HANDLE_VALUE);
  EXPECT_EQ(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_DIRECTORY);
  EXPECT_EQ(FindFirstFileW(W("Q:"), &data), INVALID_HANDLE_VALUE);
  EXPECT_NE(FindFirstFileW(W("scratch"), &data), INVALID_HANDLE_VALUE);
}

TEST(WindowsPaths, PatternsFitAsDocumented) {
  struct Row {
    const char16_t* name;
    const char16_t* pattern;
    bool fits;
  };
  constexpr Row kRows[] = {
      {u"plain", u"*.*", true},   {u"plain", u"pl?in", true},   {u"plain", u"plain???", true},
      {u"ab.c", u"ab??.c", true}, {u"plain", u"plain.*", true}, {u"plain", u"p*n*x", false},
      {u"PLAIN", u"p*N", true},   {u"a.b.c", u"*.c", true},     {u"a.b", u"a?b", true},
      {u"a.b.c", u"*.b", false},  {u"plain", u"plai", false},   {u"abc", u"", false},
      {u"axbxc", u"a*x*c", true}, {u"ab", u"?????*b", false},   {u"a.bc", u"a??.*c", true},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(FitsPattern(row.name, row.pattern), row.fits)
        << Utf8(row.name) << " / " << Utf8(row.pattern);
  }
  // A matcher that goes back would never end here.
  std::u16string stars;
  for (int i = 0; i < 40; ++i) stars += u"*a";
  EXPECT_FALSE(FitsPattern(std::u16string(200, u'a'), stars + u"b"));
}

TEST_F(DrivePathsTest, AFolderIsReadOnceWhileItStands) {
  constexpr int kFiles = 200;
  for (int i = 0; i < kFiles; ++i) MakeFile("Many\\File" + std::to_string(i) + ".TXT");
  const auto findAll = [&] {
    for (int i = 0; i < kFiles; ++i) {
      EXPECT_TRUE(FindHostPath(u"c:\\SCRATCH\\many\\file" + Decimal(i) + u".txt").has_value());
    }
  };
  findAll();
  // A reading within the clock's step of a change isn't trusted; that step is over now.
  ::usleep(50'000);
  findAll();
  const auto before = FolderReadings();
  findAll();
  EXPECT_EQ(FolderReadings(), before);
  MakeFile("Many\\New.txt");
  EXPECT_TRUE(FindHostPath(u"c:\\scratch\\many\\NEW.txt").has_value());
  EXPECT_GT(FolderReadings(), before);
}

TEST_F(DrivePathsTest, TemporaryFilesAreOursAlone) {
  const fs::path folder = Host(MakeFolder("\u0418\u0432\u0430\u043D"));
  ::setenv("TMPDIR", folder.c_str(), 1);
  const auto temporary = [] {
    return TextOfCall([](WCHAR* buffer, DWORD size) { return GetTempPathW(size, buffer); });
  };
  Text name(MAX_PATH, u'\0');
  EXPECT_TRUE(temporary().starts_with(u"\\\\?\\unix\\"));
  ASSERT_NE(GetTempFileNameW(Wide(temporary()), W("TV"), 0, WideBuffer(name)), 0U);
  name = StripAtNull(name);
  ::setenv("TMPDIR", (folder / "none").c_str(), 1);
  EXPECT_EQ(temporary(), u"\\\\?\\unix\\tmp\\");

  const fs::path host = FindHostPath(name).value_or("");
  EXPECT_TRUE(fs::equivalent(host.parent_path(), folder));
  struct stat status {};
  ASSERT_EQ(stat(host.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
  // A link in the place of the name that the program makes from this one is not followed.
  const Text icon = name + u".ico";
  fs::create_symlink(folder / "victim", host.string() + ".ico");
  EXPECT_EQ(CreateFileW(Wide(icon), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr),
            INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_EXISTS));
  EXPECT_FALSE(fs::exists(folder / "victim"));
}

}  // namespace
}  // namespace torvane::testing
