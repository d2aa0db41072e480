#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/extras.h"
#include "platform/winapi.h"
#include "support/picture_sizes.h"

namespace torvane {
namespace {

// What the group `id` lists: its icons' widths.
std::vector<int> GroupSizes(int id) {
  HRSRC const found = FindResourceW(nullptr, MAKEINTRESOURCEW(id), RT_GROUP_ICON);
  if (!found) return {};
  const auto* const group = static_cast<const BYTE*>(LockResource(LoadResource(nullptr, found)));
  std::vector<int> sizes;
  for (int i = 0; i < group[4]; ++i)
    sizes.push_back(group[6 + 14 * i] == 0 ? 256 : group[6 + 14 * i]);
  return sizes;
}

TEST(Icons, HoldTheSizesThatTheViewsShow) {
  EXPECT_EQ(GroupSizes(101), kIconSizes);
  EXPECT_EQ(GroupSizes(104), kIconSizes);
  EXPECT_NE(LoadCursorW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(101)), nullptr);
}

TEST(Icons, IconFileShowsItself) {
  const auto path = std::filesystem::temp_directory_path() / "own.ico";
  const auto bytes = DataResource(105);
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  EXPECT_NE(ImageOfIconFile(path.u16string(), -1), -1);
  std::filesystem::remove(path);
  EXPECT_EQ(ImageOfIconFile(u"C:\\sheet.txt", -1), -1);
}

}  // namespace
}  // namespace torvane
