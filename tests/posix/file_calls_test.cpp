// How often a fill asks the file system: on a drive behind a network each call is a way there and
// back. What is counted are the calls that name the drive's folder or something below it.
#include <filesystem>
#include <fstream>

#include "posix/hive_world.h"
#include "readers/basListFill.h"
#include "support/list_window.h"
#include "support/posix/traced_child.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;

class FileCallsTest : public ListWorld {
 protected:
  FileCallsTest() {
    link_ = fs::path(Variable("WINEPREFIX")) / "dosdevices/s:";
    target_ = Host(MakeFolder("Server"));
    fs::create_directory_symlink(target_, link_);
  }

  int CallsOfFill(const std::vector<TextValue>& values, Reader reader, const char* type) {
    Key(values);
    TracedChild child([&] { Fill(reader, type); });
    int calls = 0;
    while (child.next()) {
      calls += child.names(link_.native() + "/") || child.names(target_.native()) ? 1 : 0;
    }
    EXPECT_TRUE(child.endedWell());
    // What the child has counted it has shown; the rows themselves are seen here.
    Fill(reader, type);
    EXPECT_EQ(Rows().size(), values.size());
    return calls;
  }

  fs::path link_;
  fs::path target_;
};

constexpr int kEntries = 200;
constexpr int kFewMore = 12;

TEST_F(FileCallsTest, AreTwoAnEntryAndThreeAFolder) {
  std::vector<TextValue> oneFolder;
  std::vector<TextValue> manyFolders;
  std::vector<TextValue> folders;
  for (int n = 0; n < kEntries; ++n) {
    const std::string number = std::to_string(n);
    const std::string folder = "Server\\Deep\\Down\\Folder " + number;
    // One is there as it is stored, one in another case, one has a picture of its own, one is gone.
    const std::string ending = n % 4 == 2 ? ".EXE" : ".Txt";
    const std::string name = (n % 4 == 1 ? "FILE " : "File ") + number + ending;
    MakeFolder(folder);
    if (n % 4 != 3) {
      MakeFile("Server\\Deep\\Down\\One\\File " + number + ending);
      MakeFile(folder + "\\File " + number + ending);
    }
    oneFolder.emplace_back("File" + number, "S:\\Deep\\Down\\One\\" + name);
    manyFolders.emplace_back("File" + number, "S:\\Deep\\Down\\Folder " + number + "\\" + name);
    folders.emplace_back("File" + number, "S:\\DEEP\\Down\\Folder " + number + "\\");
  }
  EXPECT_LE(CallsOfFill(oneFolder, FillRegistryList, "0"), 2 * kEntries + kFewMore);
  EXPECT_EQ(Counters().MissingCount, kEntries / 4);
  EXPECT_LE(CallsOfFill(manyFolders, FillRegistryList, "0"), (2 + 3) * kEntries + kFewMore);
  EXPECT_EQ(Counters().MissingCount, kEntries / 4);
  EXPECT_LE(CallsOfFill(folders, FillFolderList, "3"), 2 * kEntries + kFewMore);
  EXPECT_EQ(Counters().MissingCount, 0);
}

TEST_F(FileCallsTest, AreOneOnADeadDrive) {
  std::vector<TextValue> values;
  for (int n = 0; n < kEntries; ++n) {
    const std::string number = std::to_string(n);
    values.emplace_back("File" + number, "S:\\Deep " + number + "\\..\\File*" + number + ".ico");
  }
  fs::remove_all(target_);
  EXPECT_EQ(CallsOfFill(values, FillRegistryList, "0"), 1);
  EXPECT_EQ(Counters().MissingCount, kEntries);
  EXPECT_EQ(CallsOfFill(values, FillFolderList, "3"), 1);
}

}  // namespace
}  // namespace torvane::testing
