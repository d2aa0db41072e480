// What only the real controls can show: that their messages reach the models, and that windows live
// and go as they should.
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

#include "windows/controls/list.h"
#include "windows/controls/tree.h"
#include "windows/win32/drawing.h"
#include "windows/win32/toolkit.h"

namespace torvane {
namespace {

class TestToolkit : public Win32Toolkit {
 public:
  TestToolkit() {
    SetToolkit(this);
    Start();
  }
  ~TestToolkit() override { SetToolkit(nullptr); }
  TestToolkit(const TestToolkit&) = delete;
  TestToolkit& operator=(const TestToolkit&) = delete;
  void ReportError(const Text& description) override { errors.push_back(description); }

  std::vector<Text> errors;
};

class TestForm : public Form {
 public:
  TestForm() : Form(BorderStyle::Sizable) {
    DesignWidth = 400;
    DesignHeight = 300;
    tree.Move({0, 0, 200, 200});
    list.Move({200, 0, 200, 200});
    frame.Move({0, 200, 50, 50});
    ok.Move({100, 200, 60, 24});
    ok.Default = true;
  }

  Tree tree{*this, u"Tree"};
  List list{*this, u"List"};
  Frame frame{*this, u"Frame"};
  Button ok{*this, u"Button"};
};

class Win32ViewsTest : public ::testing::Test {
 protected:
  ~Win32ViewsTest() override { form_.Unload(); }

  // Lets a window manager place the window and the mouse's move arrive. In the middle of a click
  // either would make a drag of it.
  void Settle() {
    RECT before{};
    for (int quiet = 0; quiet < 5; ++quiet) {
      Sleep(20);
      toolkit_.DoEvents();
      RECT now{};
      GetWindowRect(form_.hWnd(), &now);
      if (!EqualRect(&before, &now)) quiet = 0;
      before = now;
    }
  }
  // Sends what a mouse click on the node's icon sends.
  void Click(const Node& node) {
    Settle();
    const HWND window = form_.tree.hWnd();
    HTREEITEM item = TreeView_GetRoot(window);
    for (int n = 1; n < node.Index(); ++n) item = TreeView_GetNextSibling(window, item);
    RECT rect{};
    TreeView_GetItemRect(window, item, &rect, TRUE);
    POINT point{rect.left + 2, rect.top + 2};
    const LPARAM place = MAKELPARAM(point.x, point.y);
    ClientToScreen(window, &point);
    SetCursorPos(point.x, point.y);
    Settle();
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
    PostMessageW(window, WM_LBUTTONUP, 0, place);
    toolkit_.DoEvents();
  }
  Text ShownText(int row, int column) {
    std::vector<char16_t> buffer(40000);
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = reinterpret_cast<wchar_t*>(buffer.data());
    item.cchTextMax = static_cast<int>(buffer.size());
    SendMessageW(form_.list.hWnd(), LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&item));
    return reinterpret_cast<const char16_t*>(item.pszText);
  }
  int HitRow(POINT client) {
    LVHITTESTINFO hit{};
    hit.pt = client;
    return static_cast<int>(
        SendMessageW(form_.list.hWnd(), LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
  }
  int ShownImage(int row) {
    LVITEMW item{};
    item.mask = LVIF_IMAGE;
    item.iItem = row;
    SendMessageW(form_.list.hWnd(), LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
    return item.iImage;
  }

  TestToolkit toolkit_;
  TestForm form_;
};

WNDPROC listProcedure = nullptr;
int reflected = 0;
int rightClicks = 0;
POINT clicked{};

LRESULT CALLBACK AnsiProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == 0x2000 + WM_NOTIFY) {
    ++reflected;
    if (reinterpret_cast<NMHDR*>(lParam)->code == static_cast<UINT>(NM_RCLICK)) {
      ++rightClicks;
      clicked = reinterpret_cast<NMITEMACTIVATE*>(lParam)->ptAction;
    }
  }
  return CallWindowProcW(listProcedure, window, message, wParam, lParam);
}

TEST_F(Win32ViewsTest, ListKeepsTextAndImagesUnderAnAnsiProcedure) {
  form_.Show();
  const HWND window = form_.list.hWnd();
  listProcedure = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AnsiProcedure)));
  form_.list.ColumnHeaders().Add(u"File");
  form_.list.ColumnHeaders().Add(u"Путь");
  const Text longText(32000, u'х');
  const Text cutText = longText.substr(0, 259) + u'…';
  for (int n = 0; n < 4; ++n) {
    form_.list.ListItems().Add(u"日本 " + Decimal(n)).SubItems(1, n == 3 ? longText : u"Ünïcödé");
    LVITEMW item{};
    item.mask = LVIF_IMAGE;
    item.iItem = n;
    item.iImage = n * 10;
    SendMessageW(window, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }
  toolkit_.DoEvents();
  EXPECT_EQ(ShownText(1, 0), u"日本 1");
  EXPECT_EQ(ShownText(3, 1), cutText);

  EXPECT_EQ(form_.list.SelectedItem(), nullptr);
  PostMessageW(window, WM_CHAR, u'日', 1);
  toolkit_.DoEvents();
  EXPECT_NE(form_.list.SelectedItem(), nullptr) << "type-ahead";
  POINT before{};
  POINT after{};
  GetCursorPos(&before);
  SendMessageW(window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window), -1);
  GetCursorPos(&after);
  EXPECT_EQ(rightClicks, 1) << "the menu key";
  EXPECT_EQ(HitRow(clicked), form_.list.SelectedItem()->Index() - 1);
  EXPECT_TRUE(before.x == after.x && before.y == after.y) << "the mouse stays where it is";

  form_.list.ListItems()(3).Selected(true);
  EXPECT_GT(reflected, 0);
  form_.list.ListItems().RemoveWhere([](const ListItem& item) { return item.Index() % 2 != 0; });
  ASSERT_EQ(SendMessageW(window, LVM_GETITEMCOUNT, 0, 0), 2);
  EXPECT_EQ(ShownText(0, 0), u"日本 1");
  EXPECT_EQ(ShownImage(0), 10);
  EXPECT_EQ(ShownText(1, 1), cutText);
  EXPECT_EQ(ShownImage(1), 30);
  EXPECT_FALSE(form_.list.ListItems()(1).Selected());
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(listProcedure));
}

TEST_F(Win32ViewsTest, EverySelectionInTheTreeIsToldWhoeverMakesIt) {
  for (int n = 0; n < 3; ++n) {
    form_.tree.Nodes().Add(nullptr, NodeRelationship::None, u"Node", 0);
  }
  std::vector<int> chosen;
  form_.tree.NodeClick = [&](const Node& node) { chosen.push_back(node.Index()); };
  form_.Show();
  toolkit_.DoEvents();
  EXPECT_EQ(form_.tree.SelectedItem(), nullptr);
  Click(form_.tree.Nodes()(2));
  Click(form_.tree.Nodes()(2));
  PostMessageW(form_.tree.hWnd(), WM_KEYDOWN, VK_DOWN, 0);
  toolkit_.DoEvents();
  SendMessageW(form_.tree.hWnd(), TVM_SELECTITEM, TVGN_CARET,
               reinterpret_cast<LPARAM>(TreeView_GetRoot(form_.tree.hWnd())));
  toolkit_.DoEvents();
  EXPECT_EQ(chosen, (std::vector<int>{2, 2, 3, 1})) << "a screen reader is the last";
  form_.tree.SelectedItem(form_.tree.Nodes()(2));
  toolkit_.DoEvents();
  EXPECT_EQ(chosen.size(), 4U);
  form_.tree.SelectedItem(form_.tree.Nodes()(1));
  toolkit_.DoEvents();
  EXPECT_EQ(chosen.size(), 4U);
  EXPECT_EQ(form_.tree.SelectedItem()->Index(), 1);
}

TEST_F(Win32ViewsTest, ModalFormDisablesItsOwnerUntilItIsClosed) {
  form_.Show();
  const HWND owner = form_.hWnd();
  for (const UINT way : {UINT{BM_CLICK}, UINT{WM_KEYDOWN}, UINT{WM_CLOSE}}) {
    TestForm modal;
    modal.Load();
    const HWND window = modal.hWnd();
    bool ownerEnabled = true;
    bool canGoAlone = true;
    modal.Resize = [&] {
      ownerEnabled = IsWindowEnabled(owner) != FALSE;
      canGoAlone = (GetWindowLongPtrW(window, GWL_STYLE) & WS_MINIMIZEBOX) != 0;
    };
    bool windowStands = true;
    modal.ok.Click = [&] {
      modal.Unload();
      windowStands = IsWindow(window) != FALSE;
    };
    // Escape goes to where the focus is, the others to the button and to the form.
    const HWND target = way == WM_CLOSE ? window : modal.ok.hWnd();
    PostMessageW(target, way, way == WM_KEYDOWN ? VK_ESCAPE : 0, 0);
    modal.ShowModal(form_);
    EXPECT_FALSE(ownerEnabled) << way;
    EXPECT_FALSE(canGoAlone) << way;
    EXPECT_TRUE(windowStands) << way;
    EXPECT_FALSE(modal.Loaded()) << way;
    EXPECT_FALSE(IsWindow(window)) << way;
    EXPECT_TRUE(IsWindowEnabled(owner)) << way;
  }
}

TEST_F(Win32ViewsTest, FormThatClosesWhileAHandlerRunsEndsTheLoop) {
  form_.tree.Nodes().Add(nullptr, NodeRelationship::None, u"Node", 0);
  form_.Show();
  form_.tree.NodeClick = [&](Node&) {
    PostMessageW(form_.hWnd(), WM_CLOSE, 0, 0);
    toolkit_.DoEvents();
    EXPECT_FALSE(form_.Loaded());
    form_.list.ListItems().Add(u"goes on without a view");
    throw std::runtime_error("late");
  };
  Click(form_.tree.Nodes()(1));
  toolkit_.Run();
  EXPECT_EQ(form_.list.ListItems().Count(), 1);
  EXPECT_EQ(toolkit_.errors, std::vector<Text>{u"late"});
}

TEST_F(Win32ViewsTest, FormSeesKeysFirst) {
  std::vector<int> keys;
  form_.KeyPreview = true;
  form_.KeyPress = [&](int& key) {
    keys.push_back(key);
    key = 0;
  };
  int clicks = 0;
  form_.ok.Click = [&] { ++clicks; };
  form_.Show();
  const HWND list = form_.list.hWnd();
  PostMessageW(list, WM_KEYDOWN, VK_ESCAPE, 0);
  PostMessageW(list, WM_KEYDOWN, VK_RETURN, 0);
  PostMessageW(list, WM_CHAR, 'x', 0);
  toolkit_.DoEvents();
  EXPECT_EQ(keys, (std::vector<int>{27, '\r', 'x'}));
  EXPECT_EQ(clicks, 0);
  form_.KeyPreview = false;
  PostMessageW(list, WM_KEYDOWN, VK_RETURN, 0);
  toolkit_.DoEvents();
  EXPECT_EQ(clicks, 1);
}

TEST_F(Win32ViewsTest, FrameKeepsThePressedMouseWhileItIsHidden) {
  std::vector<float> released;
  form_.frame.MouseUp = [&](int, int, float x, float) { released.push_back(x); };
  form_.Show();
  const HWND frame = form_.frame.hWnd();
  SendMessageW(frame, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
  form_.frame.Visible(false);
  form_.frame.Visible(true);
  EXPECT_EQ(GetCapture(), frame);
  SendMessageW(frame, WM_LBUTTONUP, 0, MAKELPARAM(-2, 3));
  EXPECT_EQ(GetCapture(), nullptr);
  toolkit_.DoEvents();
  EXPECT_EQ(released,
            std::vector<float>{-2.0F * static_cast<float>(form_.Scale().TwipsPerPixel())});

  SendMessageW(frame, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
  ReleaseCapture();
  EXPECT_EQ(released.size(), 1U);
  toolkit_.DoEvents();
  EXPECT_EQ(released.size(), 2U);
}

}  // namespace
}  // namespace torvane
