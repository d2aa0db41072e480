// What the Qt views do by themselves under keys and mouse: which node and rows are chosen, what the
// program hears of it, what survives when rows go.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QEventLoop>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRubberBand>
#include <QScrollBar>
#include <QTimer>
#include <QTreeWidget>
#include <QWindow>
#include <csignal>

#include "platform/posix/disk/write_back.h"
#include "support/printing.h"
#include "support/recording_toolkit.h"
#include "support/room.h"
#include "support/scratch_world.h"
#include "support/started_toolkit.h"
#include "windows/controls/form.h"
#include "windows/controls/list.h"
#include "windows/controls/picture_box.h"
#include "windows/controls/tree.h"
#include "windows/frmSplash.h"
#include "windows/qt/drawing.h"
#include "windows/qt/write_back.h"

namespace torvane {
namespace {

using testing::RecordingToolkit;
using testing::Utf8;

constexpr UINT kReflectedNotify = 0x2000 + WM_NOTIFY;

/// A form with one control of each kind that the user works with.
class TestForm : public Form {
 public:
  TestForm() : Form(BorderStyle::Sizable) {
    DesignWidth = 600;
    DesignHeight = 400;
    tree.Move({0, 0, 200, 300});
    list.Move({204, 0, 390, 300});
    bar.Move({200, 0, 4, 300});
    box.Move({0, 310, 100, 40});
    ok.Move({110, 310, 80, 30});
    back.Move({200, 310, 80, 30});
    ok.Default = true;
    back.Cancel = true;
  }

  Tree tree{*this, u"Tree"};
  List list{*this, u"List"};
  Frame bar{*this, u"Bar"};
  PictureBox box{*this, u"Box"};
  Button ok{*this, u"Ok"};
  Button back{*this, u"Back"};
  TextBox text{*this, u"Text"};
  Label link{*this, u"Link"};
};

class QtViewsTest : public testing::ScratchWorld {
 protected:
  QtViewsTest() { SetToolkit(&testing::StartedToolkit()); }
  ~QtViewsTest() override {
    form_.Unload();
    CurrentToolkit().DoEvents();
    SetToolkit(nullptr);
  }

  /// Shows the form; with `rows` rows in the list.
  void Show(int rows = 0) {
    form_.Show();
    CurrentToolkit().DoEvents();
    if (rows == 0) return;
    SendMessageW(ListWindow(), LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT,
                 LVS_EX_FULLROWSELECT);
    form_.list.ColumnHeaders().Add(u"Name");
    form_.list.ColumnHeaders().Add(u"Path");
    for (int row = 1; row <= rows; ++row) {
      form_.list.ListItems().Add(Decimal(row)).SubItems(1, u"C:\\folder");
    }
    for (WPARAM column = 0; column < 2; ++column) {
      SendMessageW(ListWindow(), LVM_SETCOLUMNWIDTH, column, LVSCW_AUTOSIZE_USEHEADER);
    }
    CurrentToolkit().DoEvents();
  }
  HWND ListWindow() const { return form_.list.hWnd(); }

  template <class Widget>
  static Widget& Find(const char* name) {
    for (QWidget* widget : QApplication::allWidgets()) {
      auto* found = dynamic_cast<Widget*>(widget);
      if (found && widget->isVisible() && widget->objectName() == name) return *found;
    }
    throw std::runtime_error(name);
  }
  static QTreeWidget& TreeWindow() { return Find<QTreeWidget>("Tree"); }
  static QTreeView& Rows() { return Find<QTreeView>("List"); }

  static void Mouse(QWidget& widget, QEvent::Type type, QPoint place, Qt::MouseButton button,
                    Qt::KeyboardModifiers keys = Qt::NoModifier) {
    const auto down = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
    const auto own = type == QEvent::MouseMove ? Qt::NoButton : button;
    QMouseEvent event(type, QPointF(place), QPointF(widget.mapToGlobal(place)), own, down, keys);
    QCoreApplication::sendEvent(&widget, &event);
  }
  static void Click(QWidget& widget, QPoint place, Qt::MouseButton button = Qt::LeftButton,
                    Qt::KeyboardModifiers keys = Qt::NoModifier) {
    Mouse(widget, QEvent::MouseButtonPress, place, button, keys);
    Mouse(widget, QEvent::MouseButtonRelease, place, button, keys);
  }
  static void Press(QObject& target, int key, const QString& text = {}) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&target, &event);
  }
  /// The middle of a row, from 1.
  static QPoint RowPlace(int row) {
    return Rows().visualRect(Rows().model()->index(row - 1, 1)).center();
  }
  std::string SelectedRows() const {
    std::string rows;
    for (int row = 1; row <= form_.list.ListItems().Count(); ++row) {
      if (form_.list.ListItems()(row).Selected()) rows += std::to_string(row) + " ";
    }
    return rows;
  }

  TestForm form_;
};

/// Hears of the pictures that a widget draws.
class PictureWatch : public QObject {
 public:
  explicit PictureWatch(std::string& heard) : heard_(heard) {}
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) heard_ += "picture ";
    return false;
  }

 private:
  std::string& heard_;
};

TEST_F(QtViewsTest, WhatIsIdleWaitsForTheMainWindowsFirstPicture) {
  form_.MenuBar().Add(u"View");
  std::string heard;
  CurrentToolkit().WhenIdle([&heard] { heard += "idle "; });
  form_.Show();
  PictureWatch watch(heard);
  Rows().viewport()->installEventFilter(&watch);
  for (int turn = 0; turn < 100 && !heard.ends_with("idle "); ++turn) CurrentToolkit().DoEvents();
  EXPECT_EQ(heard.substr(0, 13), "picture idle ");
}

TEST_F(QtViewsTest, NodesAreChosenByLeftClickAndKeysOnly) {
  Node& first = form_.tree.Nodes().Add(nullptr, NodeRelationship::None, u"First", 0);
  form_.tree.Nodes().Add(&first, NodeRelationship::Child, u"Child", 0);
  form_.tree.Nodes().Add(nullptr, NodeRelationship::None, u"Second", 0);
  std::string told;
  form_.tree.NodeClick = [&](Node& node) { told += Utf8(node.Text()) + " "; };
  form_.tree.Expand = [&](Node&) { told += "+ "; };
  form_.tree.Collapse = [&](Node&) { told += "- "; };
  Show();
  QTreeWidget& tree = TreeWindow();
  const QRect place = tree.visualItemRect(tree.topLevelItem(0));
  EXPECT_EQ(form_.tree.SelectedItem(), nullptr);

  const auto expect = [&](const char* what, const char* events, TextView selected) {
    EXPECT_EQ(told, events) << what;
    EXPECT_EQ(form_.tree.SelectedItem()->Text(), selected) << what;
    told.clear();
  };
  tree.setCurrentItem(tree.topLevelItem(0), 0, QItemSelectionModel::NoUpdate);
  Press(tree, Qt::Key_Down);
  expect("Down before a choice", "First ", u"First");
  Click(*tree.viewport(), place.center());
  expect("a click", "First ", u"First");
  Click(*tree.viewport(), place.center(), Qt::LeftButton, Qt::ControlModifier);
  expect("a click with Ctrl on the chosen node", "First ", u"First");
  Click(*tree.viewport(), {place.left() - 10, place.center().y()});
  expect("a click on the expander", "+ ", u"First");
  Press(tree, Qt::Key_Down);
  expect("Down", "Child ", u"Child");
  Press(tree, Qt::Key_S, QStringLiteral("s"));
  expect("a letter", "Second ", u"Second");
  Click(*tree.viewport(), place.center(), Qt::RightButton);
  expect("a right-click", "", u"Second");
  Click(*tree.viewport(), {place.center().x(), tree.viewport()->height() - 5});
  expect("a click beside the nodes", "", u"Second");
  first.Expanded(false);
  expect("collapsing by the program", "- ", u"Second");
  form_.tree.SelectedItem(first);
  expect("choosing by the program", "", u"First");
}

TEST_F(QtViewsTest, EverySelectionIsToldWhoeverMakesIt) {
  Node& first = form_.tree.Nodes().Add(nullptr, NodeRelationship::None, u"First", 0);
  form_.tree.Nodes().Add(&first, NodeRelationship::Child, u"Child", 0);
  form_.tree.Nodes().Add(nullptr, NodeRelationship::None, u"Second", 0);
  std::string told;
  Show();
  QTreeWidget& tree = TreeWindow();
  form_.tree.NodeClick = [&](Node& node) {
    told += Utf8(node.Text()) + " ";
    if (&node == &first) Press(tree, Qt::Key_Down);
  };
  Click(*tree.viewport(), tree.visualItemRect(tree.topLevelItem(0)).center());
  EXPECT_EQ(told, "First Second ") << "a key while the click is answered";
  // What a screen reader does.
  tree.selectionModel()->select(tree.model()->index(0, 0, tree.model()->index(0, 0)),
                                QItemSelectionModel::ClearAndSelect);
  CurrentToolkit().DoEvents();
  EXPECT_EQ(told, "First Second Child ");
  first.Expanded(true);
  form_.tree.NodeClick = [&](Node& node) { told += Utf8(node.Text()) + "! "; };
  first.Expanded(false);
  CurrentToolkit().DoEvents();
  EXPECT_EQ(told, "First Second Child First! ") << "the branch closes over the choice";
}

/// Counts the right-clicks that reach the list's window, and what they fell on.
struct RightClicks {
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == kReflectedNotify && reinterpret_cast<NMHDR*>(lParam)->code == NM_RCLICK) {
      LVHITTESTINFO hit{};
      hit.pt = reinterpret_cast<NMITEMACTIVATE*>(lParam)->ptAction;
      SendMessageW(window, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
      hitRow = hit.iItem;
      ++count;
      return 1;
    }
    return CallWindowProcW(old, window, message, wParam, lParam);
  }
  static inline WNDPROC old = nullptr;
  static inline int count = 0;
  static inline int hitRow = -1;
};

TEST_F(QtViewsTest, RightClickSelectsAsTheNativeListDoesAndIsTold) {
  Show(6);
  RightClicks::count = 0;
  RightClicks::old = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(
      ListWindow(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&RightClicks::Procedure)));
  QWidget& view = *Rows().viewport();
  const QPoint beside(20, view.height() - 5);
  const struct {
    const char* what;
    QPoint place;
    Qt::MouseButton button;
    Qt::KeyboardModifiers keys;
    const char* selected;
    int rightClicks;
  } steps[] = {
      {"a click", RowPlace(2), Qt::LeftButton, Qt::NoModifier, "2 ", 0},
      {"Shift extends", RowPlace(4), Qt::LeftButton, Qt::ShiftModifier, "2 3 4 ", 0},
      {"Ctrl toggles", RowPlace(3), Qt::LeftButton, Qt::ControlModifier, "2 4 ", 0},
      {"on a selected row", RowPlace(4), Qt::RightButton, Qt::NoModifier, "2 4 ", 1},
      {"on another row", RowPlace(6), Qt::RightButton, Qt::NoModifier, "6 ", 2},
      {"beside the rows", beside, Qt::RightButton, Qt::NoModifier, "", 3},
  };
  for (const auto& step : steps) {
    Click(view, step.place, step.button, step.keys);
    EXPECT_EQ(SelectedRows(), step.selected) << step.what;
    EXPECT_EQ(RightClicks::count, step.rightClicks) << step.what;
    EXPECT_EQ(SendMessageW(ListWindow(), LVM_GETSELECTEDCOUNT, 0, 0),
              std::string(step.selected).size() / 2)
        << step.what;
  }

  Click(view, RowPlace(5));
  QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {0, 0}, {0, 0});
  QCoreApplication::sendEvent(&Rows(), &menuKey);
  EXPECT_EQ(RightClicks::count, 4);
  EXPECT_EQ(RightClicks::hitRow, 4) << "the menu key stands for the row with the focus";
}

TEST_F(QtViewsTest, HitTestTellsRowsFromTheRoomBesideThem) {
  Show(3);
  const auto hit = [this](QPoint inView) {
    LVHITTESTINFO info{};
    const QPoint place = Rows().viewport()->mapTo(&Rows(), inView);
    info.pt = {place.x(), place.y()};
    SendMessageW(ListWindow(), LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&info));
    return std::pair(info.iItem, info.flags);
  };
  const UINT nowhere = 1;
  EXPECT_EQ(hit({RowPlace(2).x(), RowPlace(2).y()}), std::pair(1, LVHT_ONITEMLABEL));
  EXPECT_EQ(hit({Rows().viewport()->width() - 2, RowPlace(3).y()}), std::pair(2, LVHT_ONITEMLABEL));
  EXPECT_EQ(hit({5, Rows().viewport()->height() - 2}), std::pair(-1, nowhere));
  EXPECT_EQ(hit({5, -5}), std::pair(-1, nowhere)) << "the heading";
  SendMessageW(ListWindow(), LVM_SETIMAGELIST, LVSIL_SMALL, 1);
  EXPECT_EQ(hit({5, RowPlace(1).y()}), std::pair(0, LVHT_ONITEMICON));
  SendMessageW(ListWindow(), LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, 0);
  EXPECT_EQ(hit(RowPlace(2)), std::pair(-1, nowhere)) << "only the first column";
}

TEST_F(QtViewsTest, RemovalLeavesTheOthersAsTheyWere) {
  Show(1000);
  SendMessageW(ListWindow(), LVM_SETIMAGELIST, LVSIL_SMALL, 1);
  LVITEMW item{};
  item.mask = LVIF_IMAGE;
  item.iItem = 500;  // row 501
  EXPECT_EQ(SendMessageW(ListWindow(), LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item)), TRUE);
  for (const int row : {3, 501, 700}) form_.list.ListItems()(row).Selected(true);
  CurrentToolkit().DoEvents();
  const auto decorated = [](int row) {
    return Rows().model()->index(row - 1, 0).data(Qt::DecorationRole).isValid();
  };
  const auto topText = [] { return Rows().indexAt({5, 1}).siblingAtColumn(0).data().toString(); };
  Rows().scrollTo(Rows().model()->index(400, 0), QAbstractItemView::PositionAtTop);
  EXPECT_EQ(topText(), "401");
  EXPECT_TRUE(decorated(501));

  EXPECT_EQ(
      form_.list.ListItems().RemoveWhere([](const ListItem& row) { return row.Index() % 2 == 0; }),
      500);
  EXPECT_EQ(topText(), "401");
  EXPECT_EQ(SelectedRows(), "2 251 ");
  EXPECT_TRUE(Rows().selectionModel()->isRowSelected(250));
  EXPECT_EQ(SendMessageW(ListWindow(), LVM_GETSELECTEDCOUNT, 0, 0), 2);
  EXPECT_TRUE(decorated(251));
  EXPECT_FALSE(decorated(501));
  EXPECT_EQ(Rows().model()->rowCount(), 500);

  form_.list.ListItems().Clear();
  form_.list.ListItems().Add(u"new");
  CurrentToolkit().DoEvents();
  EXPECT_EQ(SelectedRows(), "");
  EXPECT_FALSE(decorated(1)) << "a new row doesn't get an old row's image";
}

TEST_F(QtViewsTest, FrameKeepsTheMouseWhileItIsHiddenAndShown) {
  Show();
  std::vector<float> moves;
  form_.bar.MouseMove = [&](int, int, float x, float) { moves.push_back(x); };
  QWidget& bar = Find<QWidget>("Bar");
  Mouse(bar, QEvent::MouseButtonPress, {1, 50}, Qt::LeftButton);
  form_.bar.Visible(false);
  EXPECT_TRUE(bar.isVisible()) << "hiding it would let the mouse go";
  Mouse(bar, QEvent::MouseMove, {31, 50}, Qt::LeftButton);
  EXPECT_EQ(moves, std::vector<float>{31 * 15});
  Mouse(bar, QEvent::MouseButtonRelease, {31, 50}, Qt::LeftButton);
  EXPECT_FALSE(bar.isVisible());
}

TEST_F(QtViewsTest, KeysReachTheFormFirstAndItsButtonsLast) {
  std::string told;
  form_.ok.Click = [&] { told += "ok "; };
  form_.back.Click = [&] { told += "back "; };
  form_.KeyPreview = true;
  form_.KeyPress = [&](int& key) {
    told += std::to_string(key) + " ";
    if (key == 'x') key = 0;
  };
  Show();
  QWidget& tree = TreeWindow();
  tree.window()->activateWindow();
  tree.setFocus();
  QObject& window = *tree.window()->windowHandle();
  Press(window, Qt::Key_Return, QStringLiteral("\r"));
  Press(window, Qt::Key_Escape, QStringLiteral("\x1b"));
  Press(window, Qt::Key_X, QStringLiteral("x"));
  Press(window, Qt::Key_Left);
  EXPECT_EQ(told, "13 ok 27 back 120 ");
}

TEST_F(QtViewsTest, ModalFormStandsOverItsOwner) {
  Show();
  QWidget& owner = *TreeWindow().window();
  owner.move(0, 0);
  TestForm modal;
  QTimer soon;
  QObject::connect(&soon, &QTimer::timeout, [&] {
    const QWidget& window = *QApplication::activeModalWidget();
    EXPECT_EQ(window.windowHandle()->transientParent(), owner.windowHandle());
    EXPECT_EQ(window.windowType(), Qt::Dialog);
    EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
    const QPoint off = window.geometry().center() - owner.geometry().center();
    EXPECT_LT(off.manhattanLength(), 8) << "centred but for the frame";
    modal.Unload();
  });
  soon.start(0);
  modal.ShowModal(form_);
}

TEST_F(QtViewsTest, SignalToEndClosesWindowAfterWindow) {
  Show();
  TestForm dialog;
  ASSERT_EQ(raise(SIGTERM), 0);
  dialog.ShowModal(form_);
  EXPECT_TRUE(dialog.Unloaded());
  CurrentToolkit().DoEvents();
  EXPECT_TRUE(form_.Unloaded());
}

TEST_F(QtViewsTest, AssistiveTechnologyHearsRolesAndNotes) {
  form_.link.Pointer(MousePointer::Hand);
  int clicks = 0;
  form_.link.Click = [&] { ++clicks; };
  Show(1);
  form_.list.ListItems()(1).ImageNote(u"Missing");
  const auto of = [](QWidget& widget) { return QAccessible::queryAccessibleInterface(&widget); };
  EXPECT_EQ(of(*TreeWindow().window())->role(), QAccessible::Window);
  EXPECT_EQ(of(Find<QWidget>("Bar"))->role(), QAccessible::Separator);
  EXPECT_EQ(of(Find<QWidget>("Box"))->role(), QAccessible::Graphic);
  QAccessibleInterface* link = of(Find<QWidget>("Link"));
  EXPECT_EQ(link->role(), QAccessible::Link);
  link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(clicks, 1);
  QAccessibleInterface* cell = of(Rows())->tableInterface()->cellAt(0, 0);
  EXPECT_EQ(cell->text(QAccessible::Name), "1");
  EXPECT_EQ(cell->text(QAccessible::Description), "Missing");
}

TEST_F(QtViewsTest, ViewsMayGoAndErrorsMayRiseWhileTheirHandlersRun) {
  form_.ok.Click = [&] { form_.Unload(); };
  form_.back.Click = [] { throw std::runtime_error("no way back"); };
  Show();
  {
    RecordingToolkit recorder(&CurrentToolkit());
    Find<QPushButton>("Back").click();
    EXPECT_EQ(recorder.errors, std::vector<Text>{u"no way back"});
  }
  Find<QPushButton>("Ok").click();
  EXPECT_FALSE(form_.Loaded());
  CurrentToolkit().DoEvents();
}

TEST_F(QtViewsTest, BarOverATextTurnsTheTextIntoTheGround) {
  form_.box.BackColor = SystemColor::WindowBackground;
  form_.box.ForeColor = SystemColor::Highlight;
  form_.box.Mode = DrawMode::NotXorPen;
  Show();
  QWidget& box = Find<QWidget>("Box");
  const QColor back = box.palette().color(QPalette::Base);
  const QColor fore = box.palette().color(QPalette::Highlight);
  form_.box.FillBox(0, 0, 60, 40);
  form_.box.FillBox(30, 0, 60, 40);
  const QImage image = box.grab().toImage();
  EXPECT_EQ(image.pixelColor(10, 20), fore);
  EXPECT_EQ(image.pixelColor(45, 20), back) << "drawn over twice";
  EXPECT_EQ(image.pixelColor(80, 20), back);
}

/// A file of the Windows world on a disk that is full until further notice.
class FullDisk : public posix::ChangedFile {
 public:
  ~FullDisk() override { posix::UnmarkChanged(*this); }
  void writeBack() override {
    ++tries;
    if (full) throw std::system_error(std::make_error_code(std::errc::no_space_on_device));
    if (slips) throw posix::NotSynced(EIO);
  }
  std::string hostPath() const override { return "/prefix/user.reg"; }
  bool full = true;
  bool slips = false;  ///< the new file stands, but perhaps not on the disk
  int tries = 0;
};

TEST_F(QtViewsTest, FailedWriteIsToldOnceAnOrderAndTriedAgain) {
  RecordingToolkit recorder(&CurrentToolkit());
  torvane::WriteBack writeBack;  // not the world's
  FullDisk file;
  posix::MarkChanged(file);
  const auto idle = [&] {
    writeBack.idle();
    QCoreApplication::processEvents();
  };
  const auto command = [&writeBack] { writeBack.run([] {}); };
  const struct {
    const char* what;
    bool runs;
    bool orders;
    int tries;
    std::size_t boxes;
  } steps[] = {
      {"a command", true, false, 1, 1},
      {"idle again", false, false, 1, 1},
      {"another click", true, false, 2, 1},
      {"another order", true, true, 3, 2},
  };
  for (const auto& step : steps) {
    if (step.orders) writeBack.newOrder();
    if (step.runs) command();
    idle();
    EXPECT_EQ(file.tries, step.tries) << step.what;
    EXPECT_EQ(recorder.messages.size(), step.boxes) << step.what;
  }
  EXPECT_TRUE(recorder.messages[0].text.starts_with(u"/prefix/user.reg can't be written: "));
  writeBack.finish();
  EXPECT_EQ(recorder.messages.size(), 3U) << "the last word";
  file.full = false;
  command();
  idle();
  EXPECT_EQ(file.tries, 5);
  EXPECT_EQ(recorder.messages.size(), 3U);
  EXPECT_TRUE(posix::WriteBackChanges().empty());
}

TEST_F(QtViewsTest, TheBoxOfAFailedWriteTellsWhatStands) {
  Show();
  FullDisk file;
  posix::MarkChanged(file);
  QTimer user;
  QEventLoop loop;
  QString told;
  QObject::connect(&user, &QTimer::timeout, &loop, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box) return;
    told = box->text();
    box->accept();
    loop.quit();
  });
  user.start(1);
  QTimer patience;
  QObject::connect(&patience, &QTimer::timeout, &loop, &QEventLoop::quit);
  patience.start(20'000);
  const auto afterCommand = [&] {
    told.clear();
    Find<QPushButton>("Ok").click();
    loop.exec();
    return told;
  };
  const QString full = afterCommand();
  EXPECT_TRUE(full.startsWith("/prefix/user.reg can't be written: No space left on device\n\n"));
  EXPECT_TRUE(full.contains("stands as it was. The changes are kept"));
  file.full = false;
  file.slips = true;
  const QString slipped = afterCommand();
  EXPECT_TRUE(slipped.contains("is written, but not for certain: Input/output error\n\n"));
  EXPECT_TRUE(slipped.contains("has the changes"));
}

TEST_F(QtViewsTest, LinksFollowTheThemeWhileTheyAreShown) {
  form_.link.ForeColor = SystemColor::HotLight;
  Show();
  const QPalette usual = QApplication::palette();
  QPalette dark(QColor(40, 40, 40));
  dark.setColor(QPalette::Link, QColor(0, 0, 255));
  QApplication::setPalette(dark);
  CurrentToolkit().DoEvents();
  const QPalette colours = Find<QLabel>("Link").palette();
  EXPECT_EQ(colours.color(QPalette::Window), dark.color(QPalette::Window));
  EXPECT_EQ(colours.color(QPalette::WindowText), LinkColor(dark));
  QApplication::setPalette(usual);
}

TEST_F(QtViewsTest, TextsHaveTheirRoomInAnyFontOfTheDesktop) {
  class BarForm : public Form {
   public:
    BarForm() : Form(BorderStyle::Sizable) { DesignWidth = 500; }
    StatusBar bar{*this, u"Status bar", {0, 80, 80}};
  };
  const QFont usual = QApplication::font();
  frmSplash about(BorderStyle::Dialog);
  about.picProgress.Visible(false);
  about.Load();
  BarForm form;
  form.Show();
  form.bar.Panels(1).Text(Text(200, u'x'));
  form.bar.Panels(2).Text(u"Total: 9");
  form.bar.Panels(3).Text(u"Missing: 1000000");
  for (const double points : {8.0, 11.0, 16.0, 9.0}) {
    SCOPED_TRACE(points);
    QFont font = usual;
    font.setPointSizeF(points);
    QApplication::setFont(font);
    CurrentToolkit().DoEvents();
    testing::ExpectRoomForTexts(about);
    const auto panels = Find<QWidget>("Status bar").findChildren<QLabel*>();
    ASSERT_EQ(panels.size(), 3);
    EXPECT_LT(panels[0]->text().size(), 200);
    EXPECT_GE(panels[1]->width(), 80);
    EXPECT_EQ(panels[1]->text(), "Total: 9");
    EXPECT_EQ(panels[2]->text(), "Missing: 1000000");
    EXPECT_LE(panels[2]->geometry().right(), form.ScaleWidth());
  }
  QApplication::setFont(usual);
  form.Unload();
  about.Unload();
}

}  // namespace
}  // namespace torvane
