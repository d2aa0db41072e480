// What a start leaves behind when the system fails it while it makes its temporary files.
#include <sys/syscall.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "spine/basMain.h"
#include "storage/raised_error.h"
#include "support/posix/traced_child.h"
#include "support/printing.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;

class ExtractionTest : public ScratchWorld {
 protected:
  fs::path Temporary() const { return Host("C:\\").parent_path().parent_path() / "tmp"; }
  std::size_t Files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(Temporary()), fs::directory_iterator()));
  }

  /// Extracts in a child whose call number `place` of a kind fails; whether all files stand then.
  /// The child ends well only where what it was told fits that.
  bool ExtractFailing(long call, int place, int error) {
    TracedChild child([this] {
      bool told = false;
      try {
        ExtractResources();
      } catch (const RaisedError& raised) {
        told = raised.Description().find(u"\\tmp\\'") != Text::npos;
      }
      if (told != (Files() == 0)) std::abort();
    });
    int met = 0;
    while (const auto number = child.next()) {
      if (*number == call && ++met == place) child.fail(error);
    }
    EXPECT_TRUE(child.endedWell()) << call << " " << place;
    const std::size_t files = Files();
    EXPECT_TRUE(files == 0 || files == 6) << files << " files, " << call << " " << place;
    for (const auto& file : fs::directory_iterator(Temporary())) fs::remove(file);
    return files == 6;
  }
};

TEST_F(ExtractionTest, AFailingWriteNamesTheFolderAndLeavesNothing) {
  for (int write = 1; write <= 6; ++write) {
    EXPECT_FALSE(ExtractFailing(SYS_write, write, ENOSPC)) << write;
  }
  EXPECT_TRUE(ExtractFailing(SYS_write, 7, ENOSPC));
}

// Of two files that are made for each of the six, every one may find its name taken.
TEST_F(ExtractionTest, ATakenNameIsTriedAnew) {
  for (int open = 1; open <= 12; ++open) {
    EXPECT_TRUE(ExtractFailing(SYS_openat, open, EEXIST)) << open;
  }
}

// It may hold tens of thousands of files.
TEST_F(ExtractionTest, TheFolderIsntRead) {
  TracedChild child(ExtractResources);
  while (const auto number = child.next()) EXPECT_NE(*number, SYS_getdents64);
  EXPECT_TRUE(child.endedWell());
  EXPECT_EQ(Files(), 6U);
}

TEST_F(ExtractionTest, AFolderThatTakesNoFileIsTold) {
  setenv("TMPDIR", "/proc", 1);
  try {
    ExtractResources();
    FAIL();
  } catch (const RaisedError& raised) {
    EXPECT_NE(raised.Description().find(u"'\\\\?\\unix\\proc\\'"), Text::npos)
        << raised.Description();
  }
}

}  // namespace
}  // namespace torvane::testing
