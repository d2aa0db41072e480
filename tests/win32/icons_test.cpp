#include <gtest/gtest.h>

#include "platform/winapi.h"

namespace torvane {
namespace {

// What the group `id` lists: its icons' widths, 256 as 0.
std::vector<int> GroupSizes(int id) {
  HRSRC const found = FindResourceW(nullptr, MAKEINTRESOURCEW(id), RT_GROUP_ICON);
  if (!found) return {};
  const auto* const group = static_cast<const BYTE*>(LockResource(LoadResource(nullptr, found)));
  std::vector<int> sizes;
  for (int i = 0; i < group[4]; ++i) sizes.push_back(group[6 + 14 * i]);
  return sizes;
}

TEST(Icons, HoldTheSizesThatTheViewsShow) {
  EXPECT_EQ(GroupSizes(101), (std::vector<int>{16, 32, 48, 64, 0}));
  EXPECT_EQ(GroupSizes(104), (std::vector<int>{16, 32, 48}));
  EXPECT_NE(LoadCursorW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(101)), nullptr);
}

}  // namespace
}  // namespace torvane
