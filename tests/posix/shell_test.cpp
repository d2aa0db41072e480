#include <stdexcept>
#include <string>

#include "platform/posix/resources.h"
#include "platform/posix/shell/shell_icons.h"
#include "platform/posix/window.h"
#include "platform/winapi.h"
#include "support/picture_sizes.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

using posix::DescribeIcon;
using Kind = posix::IconDescription::Kind;

constexpr UINT kByPath = SHGFI_SYSICONINDEX | SHGFI_SMALLICON;
constexpr UINT kByName = SHGFI_SYSICONINDEX | SHGFI_USEFILEATTRIBUTES;

class ShellTest : public ScratchWorld {
 protected:
  /// The icon's number, or -1 with the record untouched where the call finds nothing.
  static int Number(const std::string& path, UINT flags) {
    SHFILEINFOW info{};
    info.iIcon = -1;
    const DWORD_PTR list = SHGetFileInfoW(W(path), 0, &info, sizeof info, flags);
    EXPECT_EQ(list != 0, info.iIcon != -1);
    return info.iIcon;
  }
};

TEST_F(ShellTest, NumbersStandForDescriptions) {
  for (const char* file : {"Some Folder\\a.TXT", "b.txt", "none", "one.ico", "two.ico"})
    MakeFile(file);
  struct Row {
    std::string path;
    UINT flags;
    Kind kind;
    std::u16string extension;
  };
  const Row rows[] = {
      {"C:\\", kByPath, Kind::Drive, u""},
      {Folder() + "\\some folder", kByPath, Kind::Folder, u""},
      {Folder() + "\\some folder\\", kByPath | SHGFI_OPENICON, Kind::OpenFolder, u""},
      {Folder() + "\\some folder\\A.txt", kByPath, Kind::FileType, u".txt"},
      {Folder() + "\\none", kByPath, Kind::FileType, u""},
      {Folder() + "\\one.ico", kByPath, Kind::IconFile, u""},
      {".html", kByName, Kind::FileType, u".html"},
      {"Q:\\a.b\\missing.REG", kByName, Kind::FileType, u".reg"},
      {Folder() + "\\two.ico", kByName, Kind::IconFile, u""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.path);
    const int number = Number(row.path, row.flags);
    EXPECT_GT(number, 0);
    const auto icon = DescribeIcon(number);
    EXPECT_EQ(icon.kind, row.kind);
    EXPECT_EQ(icon.extension, row.extension);
    EXPECT_EQ(Number(row.path, row.flags), number);
  }
  EXPECT_EQ(Number(Folder() + "\\b.txt", kByPath), Number(".TXT", kByName));
  const int one = Number(Folder() + "\\one.ico", kByPath);
  EXPECT_NE(one, Number(Folder() + "\\two.ico", kByPath));
  EXPECT_EQ(DescribeIcon(one).file.filename(), "one.ico");
}

TEST_F(ShellTest, WhatIsNotThereHasNoNumber) {
  for (const std::string& path : {Folder() + "\\missing.txt", std::string("Q:\\"), std::string(),
                                  Folder() + "\\*", std::string("\\\\server\\share\\a.txt")}) {
    EXPECT_EQ(Number(path, kByPath), -1) << path;
  }
  for (const int number : {0, -1, 1'000'000}) EXPECT_EQ(DescribeIcon(number).kind, Kind::Unknown);
}

class FixedHost : public posix::WindowHost {
 public:
  RECT clientRect() const override { return {0, 0, 300, 200}; }
  void place(const RECT& /*rect*/) override {}
  void paintNow() override {}
  POINT toScreen(POINT client) const override { return {client.x + 10, client.y + 20}; }
};

LRESULT Echo(HWND /*window*/, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
  return static_cast<LRESULT>(message + wParam);
}

TEST(Windows, KeepNothingBehindTheirEnd) {
  FixedHost host;
  POINT point{15, 25};
  const HWND window = posix::RegisterWindow(Echo, WS_BORDER, 0, host);
  EXPECT_EQ(SendMessageW(window, 40, 2, 0), 42);
  EXPECT_EQ(SetWindowLongPtrW(window, GWL_STYLE, 0x40), WS_BORDER);
  EXPECT_EQ(GetWindowLongPtrW(window, GWL_STYLE), 0x40);
  EXPECT_EQ(SetPropW(window, W("Old"), &host), TRUE);
  EXPECT_EQ(GetPropW(window, W("OLD")), &host);
  EXPECT_EQ(ScreenToClient(window, &point), TRUE);
  EXPECT_EQ(point.x, 5);

  posix::DestroyRegisteredWindow(window);
  EXPECT_EQ(SendMessageW(window, 40, 2, 0), 0);
  EXPECT_EQ(GetPropW(window, W("old")), nullptr);
  EXPECT_EQ(SetPropW(window, W("old"), &host), FALSE);
  EXPECT_EQ(SetWindowLongPtrW(window, GWL_STYLE, 0), 0);
  EXPECT_EQ(ScreenToClient(window, &point), FALSE);
}

TEST(Icons, HoldTheSizesThatTheViewsShow) {
  EXPECT_EQ(PictureSizes(IconResource(101)), kIconSizes);
  EXPECT_EQ(PictureSizes(IconResource(104)), kIconSizes);
  EXPECT_EQ(PictureSizes(CursorResource(101)), (std::vector<int>{32}));
  EXPECT_THROW(IconResource(105), std::runtime_error);
  EXPECT_THROW(CursorResource(104), std::runtime_error);
}

}  // namespace
}  // namespace torvane::testing
