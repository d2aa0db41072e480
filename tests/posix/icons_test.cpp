#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/posix/resources.h"
#include "support/picture_sizes.h"

namespace torvane {
namespace {

TEST(Icons, HoldTheSizesThatTheViewsShow) {
  EXPECT_EQ(PictureSizes(IconResource(101)), (std::vector<int>{16, 32, 48, 64, 256}));
  EXPECT_EQ(PictureSizes(IconResource(104)), (std::vector<int>{16, 32, 48}));
  EXPECT_EQ(PictureSizes(CursorResource(101)), (std::vector<int>{32}));
  EXPECT_THROW(IconResource(105), std::runtime_error);
  EXPECT_THROW(CursorResource(104), std::runtime_error);
}

}  // namespace
}  // namespace torvane
