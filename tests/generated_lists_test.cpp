// Nothing goes but what was chosen, and what went comes back: held against generated lists of all
// forms. A failure prints the seed of its list.
#include "support/generated_lists.h"

#include <gtest/gtest.h>

#include "support/list_window.h"

namespace torvane::testing {
namespace {

class GeneratedListsTest : public ListWorld {
 protected:
  GeneratedListsTest() {
    UseKey("software\\TorvaneTest\\Generated");
    MakeKey("Software\\Halvex\\Torvane\\Paths", {{"Torvane Test", "C:\\windows\\"}});
  }

  GeneratedWorld World() {
    return {
        .context = {list_, status_, tree_, undo_},
        .realPaths = {Utf16(MakeFile("Data\\Read Me.TXT")), Utf16(MakeFile("bare")),
                      Utf16(MakeFile("日本\\Ж Ω.txt")), Utf16(MakeFolder("Folder One")),
                      Utf16(Folder()) + u"\\"},
        .putIni = [this](const std::string& bytes) { MakeWindowsFile("torvane-test.ini", bytes); },
        .iniBytes = [this] { return WindowsFileBytes("torvane-test.ini"); },
        .givesBackBytes = kGivesBackBytes,
        .writeBack = [] { WriteBack(); }};
  }

  Tree tree_{form_, u"Tree"};
  UndoStore undo_;
};

TEST_F(GeneratedListsTest, LoseNothingButWhatWasChosen) {
  GeneratedWorld world = World();
  for (std::uint32_t seed = 1; seed <= kManyLists; ++seed) {
    SeededChoices choices(seed);
    const std::string wrong = RunGeneratedList(choices, world);
    ASSERT_EQ(wrong, "") << "seed " << seed;
    WriteBack();
  }
}

}  // namespace
}  // namespace torvane::testing
