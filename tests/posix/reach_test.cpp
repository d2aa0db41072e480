// An entry on a drive that a sandbox keeps to itself isn't called missing.
#include <filesystem>

#include "posix/hive_world.h"
#include "readers/basListFill.h"
#include "support/list_window.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;

class ReachTest : public ListWorld {};

TEST_F(ReachTest, ASandboxsOwnFolderIsNotMissing) {
  const fs::path prefix = Variable("WINEPREFIX");
  const struct {
    const char* drive;
    const char* target;
    const char* tag;
    const char* note;
  } cases[] = {
      {"D", "/app/share", "KEEP", "Can't be reached"},
      {"E", "/var/data", "KEEP", "Can't be reached"},
      {"F", "/nonexistent/stick", "KILL", "Missing: its drive or server can't be reached"},
      {"G", "../drive_c", "KILL", "Missing"},
      {"H", nullptr, "KILL", "Missing: its drive or server can't be reached"},
  };
  for (const auto& [drive, target, tag, note] : cases) {
    SCOPED_TRACE(drive);
    if (target != nullptr)
      fs::create_symlink(target, prefix / "dosdevices" / (std::string(1, drive[0] | 0x20) + ":"));
    Key({{"File1", std::string(drive) + ":\\lists\\gone.txt"}});
    Fill(FillRegistryList, "0");
    ASSERT_EQ(Rows().size(), 1U);
    EXPECT_EQ(Rows()[0][0], tag);
    EXPECT_EQ(ToAnsi(list_.ListItems()(1).ImageNote()), note);
    EXPECT_EQ(Counters().MissingCount, tag == std::string("KILL") ? 1 : 0);
  }
}

}  // namespace
}  // namespace torvane::testing
