// The short names that Wine makes for the files of a host: what other programs stored under them is
// found, on the layer as under Wine.
#include <gtest/gtest.h>

#include "storage/paths.h"
#include "support/printing.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

class ShortNamesTest : public ScratchWorld {};

TEST_F(ShortNamesTest, LeadToTheLongOnes) {
  struct Row {
    const char* name;
    const char16_t* shortName;
  };
  constexpr Row kRows[] = {
      {"A long name.txt", u"A_LO~MCC.TXT"},
      {"a.txtx", u"A~~~~ZRD.TXT"},
      {"123456789.123", u"1234~PGC.123"},
      {"no ext at all here", u"NO_E~2TF"},
      {"name with. dots.extension", u"NAME~PL0.EXT"},
      {".hidden", u"_HID~45N"},
      {"...c", u"__~~~WXZ.C"},
      {"a,b;c[d].x", u"A_B_~AL3.X"},
      {"x.y z", u"X~~~~JQW.Y_Z"},
      {"\u00C4rger.txt", u"_RGE~HVU.TXT"},
      {"x.\u00C4\u00D6\u00DC", u"X~~~~AK3.___"},
      {"MixedCase.TXT", u"MIXE~YUX.TXT"},
      {"\u00E5~1", u"__1~~MHL"},
  };
  const Text folder = Utf16(MakeFolder("my documents"));
  const Text stored = Utf16(Folder()) + u"\\my_d~d41\\";
  for (const Row& row : kRows) MakeFile(std::string("my documents\\") + row.name);
  for (const Row& row : kRows) {
    const Text longPath = folder + u"\\" + Utf16(row.name);
    EXPECT_EQ(GetLongPath(stored + row.shortName), longPath);
    EXPECT_EQ(GetLongPath(stored + LowerCase(row.shortName)), longPath);
  }
  // A name that is short as it stands has no other, and a name as it stands goes ahead of all.
  MakeFile("lower.txt");
  MakeFile("1234~PGC.123");
  MakeFile("123456789.123");
  EXPECT_FALSE(FileExists(Utf16(Folder()) + u"\\LOWE~~~~.TXT"));
  EXPECT_EQ(GetLongPath(Utf16(Folder()) + u"\\1234~PGC.123"), Utf16(Folder()) + u"\\1234~PGC.123");
  EXPECT_FALSE(FileExists(stored + u"A_LO~MCD.TXT"));
}

}  // namespace
}  // namespace torvane::testing
