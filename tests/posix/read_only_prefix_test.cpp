#include "spine/basMain.h"
#include "spine/frmMain.h"
#include "support/printing.h"
#include "support/recording_toolkit.h"
#include "support/scratch_world.h"

namespace torvane {
namespace {

class ReadOnlyPrefixTest : public testing::ScratchWorld {
 protected:
  void AllowWriting(bool allowed) const {
    using std::filesystem::perms;
    std::filesystem::permissions(
        Host("C:\\").parent_path().parent_path(),
        allowed ? perms::owner_all : perms::owner_read | perms::owner_exec);
  }
};

TEST_F(ReadOnlyPrefixTest, OpensShowsAndClosesAndTellsOfItsSettings) {
  AllowWriting(false);
  testing::RecordingToolkit toolkit;
  ExtractResources();
  frmMain& form = MakeMainWindow({});
  form.Load();
  EXPECT_EQ(toolkit.errors.size(), 1U);
  EXPECT_EQ(form.tvwMRU.Nodes().Count(), 11 + 97);
  form.Unload();
  EXPECT_EQ(toolkit.errors.size(), 2U);
  EXPECT_TRUE(toolkit.errors[1].starts_with(u"Failed to set registry value Key:"));
  EXPECT_TRUE(form.Unloaded());
  EXPECT_FALSE(FileExists(Icons().IconMissingFile));
  AllowWriting(true);
}

}  // namespace
}  // namespace torvane
