#include <string>

#include "platform/posix/shell_icons.h"
#include "platform/posix/window.h"
#include "platform/winapi.h"
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
    SHFILEINFOA info{};
    info.iIcon = -1;
    const DWORD_PTR list = SHGetFileInfoA(path.c_str(), 0, &info, sizeof info, flags);
    EXPECT_EQ(list != 0, info.iIcon != -1);
    return info.iIcon;
  }
};

TEST_F(ShellTest, NumbersStandForDescriptions) {
  MakeFile("Some Folder\\a.TXT");
  MakeFile("b.txt");
  MakeFile("none");
  MakeFile("one.ico");
  MakeFile("two.ico");
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

/// A view of fixed size at a fixed place.
class FixedHost : public posix::WindowHost {
 public:
  RECT clientRect() const override { return {0, 0, 300, 200}; }
  void place(const RECT& rect) override { placed = rect; }
  void paintNow() override { ++painted; }
  POINT toScreen(POINT client) const override { return {client.x + 10, client.y + 20}; }

  RECT placed{};
  int painted = 0;
};

LRESULT Echo(HWND /*window*/, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
  return static_cast<LRESULT>(message + wParam);
}

LRESULT Twice(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto old = reinterpret_cast<WNDPROC>(GetPropA(window, "old"));
  return 2 * CallWindowProcA(old, window, message, wParam, lParam);
}

TEST(Windows, ProceduresPropertiesAndPlaces) {
  FixedHost host;
  const HWND window = posix::RegisterWindow(Echo, WS_BORDER, 0, host);
  EXPECT_EQ(SendMessageA(window, 40, 2, 0), 42);
  const LONG_PTR old = SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Twice));
  EXPECT_EQ(old, reinterpret_cast<LONG_PTR>(&Echo));
  EXPECT_EQ(SetPropA(window, "Old", reinterpret_cast<HANDLE>(old)), TRUE);
  EXPECT_EQ(SendMessageA(window, 40, 2, 0), 84);
  EXPECT_EQ(RemovePropA(window, "OLD"), reinterpret_cast<HANDLE>(old));
  EXPECT_EQ(GetPropA(window, "old"), nullptr);
  EXPECT_EQ(SendMessageA(window, 40, 2, 0), 0);
  EXPECT_EQ(SetWindowLongPtrA(window, GWL_STYLE, 0x40), WS_BORDER);
  EXPECT_EQ(GetWindowLongPtrA(window, GWL_STYLE), 0x40);

  POINT point{15, 25};
  EXPECT_EQ(ScreenToClient(window, &point), TRUE);
  EXPECT_EQ(point.x, 5);
  EXPECT_EQ(MoveWindow(window, 1, 2, 30, 40, TRUE), TRUE);
  EXPECT_EQ(host.placed.right, 31);
  EXPECT_EQ(host.placed.bottom, 42);
  EXPECT_EQ(UpdateWindow(window), TRUE);
  EXPECT_EQ(host.painted, 1);

  posix::DestroyRegisteredWindow(window);
  EXPECT_EQ(SendMessageA(window, 40, 2, 0), 0);
  EXPECT_EQ(GetPropA(window, "old"), nullptr);
  EXPECT_EQ(SetPropA(window, "old", &host), FALSE);
  EXPECT_EQ(SetWindowLongPtrA(window, GWL_STYLE, 0), 0);
  EXPECT_EQ(ScreenToClient(window, &point), FALSE);
}

TEST(Windows, LocalMemoryIsZeroedAndKnown) {
  auto* block = static_cast<char*>(LocalAlloc(LMEM_ZEROINIT, 11));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(std::string(block, 11), std::string(11, '\0'));
  EXPECT_EQ(LocalFree(block), nullptr);
  EXPECT_EQ(LocalFree(block), block);
  EXPECT_EQ(LocalFree(nullptr), nullptr);
}

}  // namespace
}  // namespace torvane::testing
