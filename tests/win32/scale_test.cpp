// What a window does when Windows tells it that its screen has another scale now.
#include <gtest/gtest.h>

#include <cmath>

#include "spine/basMain.h"
#include "spine/frmMain.h"
#include "support/room.h"
#include "support/scratch_world.h"
#include "support/started_toolkit.h"
#include "windows/frmSplash.h"

namespace torvane {
namespace {

constexpr auto kNero = "software\\ahead\\Nero - Burning Rom\\Recent File List";
constexpr auto kSettings = "Software\\Halvex\\Torvane";

class ScaleTest : public testing::ScratchWorld {
 protected:
  ScaleTest() {
    SetToolkit(&testing::StartedToolkit());
    UseKey(kSettings);
  }
  ~ScaleTest() override {
    if (MainWindow().Loaded()) MainWindow().Unload();
    CurrentToolkit().DoEvents();
    SetToolkit(nullptr);
  }

  /// Sends what Windows sends, with the place that it suggests: the same size in inches.
  static void Rescale(const Form& form, int dpi) {
    constexpr UINT kDpiChanged = 0x02E0;
    const double factor = dpi / form.Scale().dotsPerInch;
    RECT place{};
    GetWindowRect(form.hWnd(), &place);
    place.right = place.left + std::lround((place.right - place.left) * factor);
    place.bottom = place.top + std::lround((place.bottom - place.top) * factor);
    SendMessageW(form.hWnd(), kDpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
    CurrentToolkit().DoEvents();
  }
  static double FontHeight(const Control& control) {
    LOGFONTW record{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control.hWnd(), WM_GETFONT, 0, 0)),
               sizeof record, &record);
    return std::abs(record.lfHeight);
  }
  static int IconSize(const Control& control, UINT message, WPARAM which) {
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(
        reinterpret_cast<HIMAGELIST>(SendMessageW(control.hWnd(), message, which, 0)), &width,
        &height);
    return width;
  }
  static double ColumnWidth(const frmMain& form) {
    return static_cast<double>(SendMessageW(form.lvwMRU.hWnd(), LVM_GETCOLUMNWIDTH, 0, 0));
  }
  /// How far the bar goes when the mouse drags it 40 pixels to the right.
  static int Drag(const frmMain& form) {
    const HWND bar = form.fraSplitter.hWnd();
    const int before = form.fraSplitter.Left();
    SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(0, 5));
    SendMessageW(bar, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(40, 5));
    SendMessageW(bar, WM_LBUTTONUP, 0, MAKELPARAM(0, 5));
    return form.fraSplitter.Left() - before;
  }
};

TEST_F(ScaleTest, EverythingFollowsTheScreen) {
  MakeKey(kNero, {{"File1", "C:\\gone\\a file.nrg"}});
  Main();
  frmMain& form = MainWindow();
  // Small enough for the screen at each scale: the system lets no window grow beyond it.
  form.Move({300}, {300}, {6000}, {4500});
  for (int n = 1; n <= form.tvwMRU.Nodes().Count(); ++n) {
    Node& node = form.tvwMRU.Nodes()(n);
    if (node.Text() == u"Nero-Burning Rom") form.tvwMRU.NodeClick(node);
  }
  form.sbrInfo.Panels(3).Text(u"Missing: 1000000");
  CurrentToolkit().DoEvents();
  const double start = form.Scale().dotsPerInch;
  const double font = FontHeight(form.lvwMRU) / start;
  const double column = ColumnWidth(form) / start;
  const double split = static_cast<double>(form.fraSplitter.Left()) / form.ScaleWidth();
  for (const int dpi : {168, 192, 216, 120, 96}) {
    SCOPED_TRACE(dpi);
    Rescale(form, dpi);
    EXPECT_EQ(form.Scale().dotsPerInch, dpi);
    EXPECT_NEAR(form.Width().count, 6000, 2 * form.Scale().TwipsPerPixel());
    EXPECT_NEAR(FontHeight(form.lvwMRU), font * dpi, 1);
    EXPECT_NEAR(FontHeight(form.tvwMRU), font * dpi, 1);
    EXPECT_NEAR(FontHeight(form.sbrInfo), font * dpi, 1);
    EXPECT_NEAR(ColumnWidth(form), column * dpi, 4);
    const int icon = MulDiv(16, dpi, 96);
    EXPECT_EQ(IconSize(form.tvwMRU, TVM_GETIMAGELIST, TVSIL_NORMAL), icon);
    EXPECT_EQ(IconSize(form.lvwMRU, LVM_GETIMAGELIST, LVSIL_SMALL), icon);
    EXPECT_EQ(form.fraSplitter.Width(),
              form.SystemMetric(SM_CXFRAME) - form.SystemMetric(SM_CXBORDER));
    EXPECT_NEAR(form.fraSplitter.Left(), split * form.ScaleWidth(), 2);
    EXPECT_EQ(form.fraSplitter.Height() + form.StatusBarHeight(), form.ScaleHeight());
    EXPECT_GT(form.StatusBarHeight(), FontHeight(form.sbrInfo));
    int edges[3] = {};
    SendMessageW(form.sbrInfo.hWnd(), SB_GETPARTS, 3, reinterpret_cast<LPARAM>(edges));
    EXPECT_NEAR(edges[1] - edges[0], form.Scale().Design(80), 1) << "the least width";
    EXPECT_GT(form.ScaleWidth() - edges[1], form.Scale().Design(100)) << "a long number";
  }
  EXPECT_EQ(Drag(form), 40);
  Rescale(form, 192);
  EXPECT_EQ(Drag(form), 40);
}

TEST_F(ScaleTest, TheAboutBoxKeepsItsTextsWhole) {
  frmSplash about(BorderStyle::Dialog);
  about.picProgress.Visible(false);
  about.Load();
  const double width = about.ScaleWidth() / about.Scale().dotsPerInch;
  for (const int dpi : {96, 168, 192, 216, 96}) {
    SCOPED_TRACE(dpi);
    Rescale(about, dpi);
    testing::ExpectRoomForTexts(about);
    EXPECT_NEAR(about.ScaleWidth(), width * dpi, 0.05 * width * dpi);
    EXPECT_EQ(std::get<DrawResourceIcon>(about.picLogo.Steps()[0]).place.width,
              about.Scale().Design(64));
  }
  about.Unload();
}

}  // namespace
}  // namespace torvane
