// The whole program with its real window, driven through its controls.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

#include "spine/basMain.h"
#include "spine/frmMain.h"
#include "support/held.h"
#include "support/printing.h"
#include "support/recording_toolkit.h"
#include "support/scratch_world.h"
#include "support/started_toolkit.h"
#include "windows/frmReadme.h"
#include "windows/frmSplash.h"
#include "windows/mWndProc.h"

namespace torvane {
namespace {

using testing::RecordingToolkit;
using testing::ShownPopup;
using testing::StartedToolkit;
using testing::W;

class WindowTest : public testing::ScratchWorld {
 protected:
  static constexpr auto kSettings = "Software\\Halvex\\Torvane";
  static constexpr auto kNero = "software\\ahead\\Nero - Burning Rom\\Recent File List";

  WindowTest() {
    SetToolkit(&StartedToolkit());
    UseKey(kSettings);
  }
  ~WindowTest() override {
    if (form_) form_->Unload();
    CurrentToolkit().DoEvents();
    SetToolkit(nullptr);
  }

  frmMain& Start() {
    Main();
    form_ = &MainWindow();
    CurrentToolkit().DoEvents();
    return *form_;
  }
  static Node& Program(frmMain& form, const Text& name) {
    for (int n = 1; n <= form.tvwMRU.Nodes().Count(); ++n) {
      if (form.tvwMRU.Nodes()(n).Text() == name) return form.tvwMRU.Nodes()(n);
    }
    throw std::runtime_error("no such node");
  }
  void Choose(const Text& name) {
    Node& node = Program(*form_, name);
    form_->tvwMRU.SelectedItem(node);
    form_->tvwMRU.NodeClick(node);
  }
  /// Where the room beside the rows is, in the list's client area.
  POINT Corner() const { return {form_->lvwMRU.Width() - 30, form_->lvwMRU.Height() - 30}; }
  void RightClickAt(POINT client) {
    const HWND window = form_->lvwMRU.hWnd();
    NMITEMACTIVATE click{};
    click.hdr = {window, 0, static_cast<UINT>(NM_RCLICK)};
    click.ptAction = client;
    EXPECT_EQ(SendMessageW(window, kReflectedNotify, 0, reinterpret_cast<LPARAM>(&click)), 1);
  }
  /// The popup that a right-click beside the rows brings.
  std::vector<ShownPopup> RightClick() {
    RecordingToolkit recorder(&CurrentToolkit());
    RightClickAt(Corner());
    return recorder.popups;
  }
  /// Whether the window keeps a key for itself.
  bool Key(int key, int held = 0) {
    form_->KeyDown(key, held);
    return key == 0;
  }
  std::map<std::string, int> Settings() const {
    std::map<std::string, int> numbers;
    for (const auto& [name, bytes] : Values(kSettings)) {
      numbers[name] =
          static_cast<unsigned char>(bytes[0]) + 256 * static_cast<unsigned char>(bytes[1]);
    }
    return numbers;
  }

  frmMain* form_ = nullptr;
};

TEST_F(WindowTest, StartsWithTheCatalogueAndLeavesNoFilesBehind) {
  frmMain& form = Start();
  EXPECT_EQ(form.Caption(), u"Torvane");
  ASSERT_EQ(form.tvwMRU.Nodes().Count(), 11 + 97);
  for (int n = 1; n <= form.tvwMRU.Nodes().Count(); ++n) {
    const Node& node = form.tvwMRU.Nodes()(n);
    EXPECT_FALSE(node.Expanded());
    EXPECT_EQ(node.Image(), node.Parent() ? 3 : 1) << node.Text();
    EXPECT_EQ(node.Tag().empty(), node.Parent() == nullptr) << node.Text();
  }
  EXPECT_EQ(Program(form, u"ConTEXT (Find History)").Tag(),
            u"Eden\\ConTEXT\\FindHistory;6;*;0;0;*;*;*");
  EXPECT_EQ(Program(form, u"RoughDraft  (Favourite Files)").Parent()->Text(), u"Text Editors");
  EXPECT_EQ(form.ilsTree.Count(), 3);
  EXPECT_EQ(form.lvwMRU.ColumnHeaders().Count(), 0);
  EXPECT_EQ(RightClick().size(), 0U);

  EXPECT_FALSE(FileExists(CatalogueFile()));
  const Text icons[] = {Icons().IconMissingFile, Icons().IconFindReplace, Icons().IconHost,
                        Icons().IconCommand, Icons().IconFtp};
  for (const Text& icon : icons) {
    EXPECT_TRUE(icon.ends_with(u".ico")) << icon;
    EXPECT_TRUE(FileExists(icon)) << icon;
    EXPECT_FALSE(FileExists(icon.substr(0, icon.size() - 4))) << icon;
  }
  form.Unload();
  for (const Text& icon : icons) EXPECT_FALSE(FileExists(icon)) << icon;
}

TEST_F(WindowTest, ChoosingShowsListAndCounters) {
  const std::string file = MakeFile("a.txt");
  MakeKey(kNero, {{"File1", file}, {"File2", "C:\\gone\\b.txt"}});
  frmMain& form = Start();
  Choose(u"Nero-Burning Rom");
  EXPECT_EQ(form.lvwMRU.ListItems().Count(), 2);
  EXPECT_EQ(form.lvwMRU.Tag(), u"0");
  EXPECT_EQ(form.lvwMRU.ListItems()(2).Tag(),
            u"KILL;ahead\\Nero - Burning Rom\\Recent File List;0;*;File;1;*;*");
  EXPECT_EQ(form.sbrInfo.Panels(1).Text(), u"Misc\\Nero-Burning Rom");
  EXPECT_EQ(form.sbrInfo.Panels(2).Text(), u"Total: 2");
  EXPECT_EQ(form.sbrInfo.Panels(3).Text(), u"Missing: 1");

  Choose(u"Audio");
  EXPECT_EQ(form.lvwMRU.ColumnHeaders().Count(), 0);
  EXPECT_EQ(form.sbrInfo.Panels(1).Text(), u"Audio");
  EXPECT_EQ(form.sbrInfo.Panels(2).Text(), u"Total: 2");

  Choose(u"GetIt");
  EXPECT_EQ(form.lvwMRU.ColumnHeaders().Count(), 1);
  EXPECT_EQ(form.sbrInfo.Panels(2).Text(), u"Total: 0");
}

TEST_F(WindowTest, PopupOffersWhatTheListAllows) {
  MakeKey(kNero, {{"File1", "C:\\gone\\b.txt"}});
  UseKey("software\\Robin Software\\GetIt\\History");
  frmMain& form = Start();
  Choose(u"GetIt");
  EXPECT_EQ(
      RightClick(),
      (std::vector<ShownPopup>{{u"(Delete Selected)", u"(Delete Missing)", u"*(Delete All)"}}));
  Choose(u"ASFRecorder");
  EXPECT_EQ(RightClick().size(), 1U);
  Choose(u"Nero-Burning Rom");
  EXPECT_EQ(RightClick(),
            (std::vector<ShownPopup>{{u"(Delete Selected)", u"Delete Missing", u"*Delete All"}}));
  form.edit.mnuEditMissing.Click();
  EXPECT_EQ(form.lvwMRU.ListItems().Count(), 0);
  EXPECT_EQ(form.sbrInfo.Panels(2).Text(), u"Total: 0");
  EXPECT_TRUE(Values(kNero).empty());
  EXPECT_EQ(RightClick(), (std::vector<ShownPopup>{{u"(Delete Selected)", u"(Delete Missing)",
                                                    u"*(Delete All)", u"-", u"Undo Delete"}}));
  form.edit.mnuEditUndo.Click();
  EXPECT_EQ(form.lvwMRU.ListItems().Count(), 1);
  EXPECT_EQ(form.sbrInfo.Panels(2).Text(), u"Total: 1");
  form.edit.mnuEditUndo.Click();
  form.lvwMRU.ListItems().Clear();
  EXPECT_EQ(RightClick().size(), 0U);
}

TEST_F(WindowTest, TreeAndListAreOneWhateverComesDuringAFill) {
  MakeKey(kNero, {{"File1", "C:\\gone\\b.txt"}, {"File2", "C:\\gone\\c.txt"}});
  frmMain& form = Start();
  RecordingToolkit recorder(&CurrentToolkit());
  const auto expectShown = [&](const Text& place, const Text& listType, int rows) {
    EXPECT_EQ(form.sbrInfo.Panels(1).Text(), place);
    EXPECT_TRUE(place.ends_with(form.tvwMRU.SelectedItem()->Text()));
    EXPECT_EQ(form.lvwMRU.Tag(), listType);
    EXPECT_EQ(form.lvwMRU.ListItems().Count(), rows);
  };
  recorder.events = [&] {
    Choose(u"ASFRecorder");
    Choose(u"Nero-Burning Rom");
  };
  Choose(u"GetIt");
  expectShown(u"Misc\\Nero-Burning Rom", u"0", 2);

  // The click fell on the list that is shown when the menu comes up, at the click's own place.
  recorder.events = [&] { RightClickAt(Corner()); };
  Choose(u"Nero-Burning Rom");
  EXPECT_EQ(recorder.popups,
            (std::vector<ShownPopup>{{u"(Delete Selected)", u"Delete Missing", u"*Delete All"}}));
  POINT place = Corner();
  ClientToScreen(form.lvwMRU.hWnd(), &place);
  EXPECT_EQ(recorder.popupPlaces[0].x, place.x);
  EXPECT_EQ(recorder.popupPlaces[0].y, place.y);
  recorder.events = [&] {
    Choose(u"Audio");
    RightClickAt(Corner());
    Choose(u"GetIt");
  };
  Choose(u"Nero-Burning Rom");
  expectShown(u"Internet\\GetIt", u"2", 0);
  EXPECT_EQ(recorder.popups.size(), 1U) << "Audio has no list to right-click";

  recorder.events = [&] { form.Unload(); };
  Choose(u"Nero-Burning Rom");
  EXPECT_TRUE(form.Unloaded());
  EXPECT_EQ(form.lvwMRU.ListItems().Count(), 0);
  EXPECT_TRUE(recorder.errors.empty());
}

TEST_F(WindowTest, ProgramsWithoutAListAreDimmed) {
  constexpr auto kGetIt = "software\\Robin Software\\GetIt\\History";
  MakeKey(kNero, {{"File1", ""}, {"File2", "C:\\gone"}});
  MakeKey(kGetIt, {{"url1", ""}});
  UseKey("Software\\Halvex\\Torvane\\Paths");
  frmMain& form = Start();
  RecordingToolkit recorder(&CurrentToolkit());
  const auto expectDimmed = [&](const char* when, const std::map<Text, bool>& dimmed) {
    for (const auto& [name, is] : dimmed)
      EXPECT_EQ(Program(form, name).Dimmed(), is) << name << when;
  };
  form.Activate();
  expectDimmed("at first", {{u"Nero-Burning Rom", false},
                            {u"Misc", false},
                            {u"GetIt", true},
                            {u"Audio", true},
                            {u"Nokia PC Composer", true},
                            {u"Resource Hacker", false}});
  EXPECT_TRUE(recorder.folderTitles.empty()) << "nobody is asked";
  EXPECT_TRUE(form.lvwMRU.EmptyText().starts_with(u"Choose a program on the left"));
  Choose(u"GetIt");
  EXPECT_EQ(form.lvwMRU.EmptyText(), u"Nothing is stored here.");
  MakeKey(kGetIt, {{"url1", "http://x"}});
  Key(kKeyF5);
  Choose(u"Nero-Burning Rom");
  form.edit.mnuEditAll.Click();
  form.Activate();
  expectDimmed("later", {{u"Nero-Burning Rom", true}, {u"GetIt", false}, {u"Internet", false}});
}

TEST_F(WindowTest, KeysWorkOnTheListAndLeaveOthersAlone) {
  MakeKey(kNero, {{"File1", "C:\\x\\1\t"}, {"File2", "C:\\2"}, {"File3", "C:\\3"}});
  frmMain& form = Start();
  Choose(u"Nero-Burning Rom");
  RecordingToolkit recorder(&CurrentToolkit());
  EXPECT_FALSE(Key(kKeyDelete)) << "the keys go to the tree";
  EXPECT_FALSE(Key(kKeyDown));
  EXPECT_TRUE(Key('A', kControlKey));
  EXPECT_EQ(form.lvwMRU.SelectedCount(), 3);
  EXPECT_TRUE(form.lvwMRU.HasFocus());
  EXPECT_TRUE(Key('C', kControlKey));
  EXPECT_EQ(recorder.clipboard, u"1 \tc:\\x\r\n2\tc:\\\r\n3\tc:\\\r\n");
  EXPECT_TRUE(Key(kKeyEscape));
  EXPECT_EQ(form.lvwMRU.SelectedCount(), 0);
  EXPECT_FALSE(Key(kKeyEscape)) << "nothing to drop";
  EXPECT_TRUE(Key(kKeyDelete));
  EXPECT_EQ(form.lvwMRU.ListItems().Count(), 3) << "nothing selected";

  EXPECT_TRUE(Key(kKeyF5));
  EXPECT_TRUE(Key(kKeyDown));
  EXPECT_TRUE(form.lvwMRU.ListItems()(1).Selected());
  EXPECT_EQ(form.lvwMRU.SelectedItem()->Index(), 1);
  EXPECT_FALSE(Key(kKeyDown)) << "the next step is the control's own";
  EXPECT_FALSE(Key(kKeyDelete, kShiftKey));
  EXPECT_TRUE(Key(kKeyDelete));
  EXPECT_EQ(Texts(kNero),
            (std::map<std::string, std::string>{{"File1", "c:\\2"}, {"File2", "c:\\3"}}));
  MakeKey(kNero, {{"File1", "C:\\new"}});
  EXPECT_TRUE(Key(kKeyF5));
  EXPECT_EQ(form.lvwMRU.ListItems().Count(), 1);
}

TEST_F(WindowTest, SelectionIsTheControlsOwn) {
  MakeKey(kNero, {{"File1", "C:\\1"}, {"File2", "C:\\2"}, {"File3", "C:\\3"}, {"File4", "C:\\4"}});
  frmMain& form = Start();
  Choose(u"Nero-Burning Rom");
  const HWND window = form.lvwMRU.hWnd();
  EXPECT_EQ(SendMessageW(window, LVM_GETSELECTEDCOUNT, 0, 0), 0);
  form.lvwMRU.ListItems()(1).Selected(true);
  form.lvwMRU.ListItems()(3).Selected(true);
  EXPECT_EQ(SendMessageW(window, LVM_GETSELECTEDCOUNT, 0, 0), 2);
  form.lvwMRU.ListItems()(1).Selected(false);
  form.lvwMRU.ListItems()(2).Selected(true);
  form.edit.mnuEditSelected.Click();
  EXPECT_EQ(form.lvwMRU.ListItems().Count(), 2);
  EXPECT_EQ(Texts(kNero),
            (std::map<std::string, std::string>{{"File1", "c:\\1"}, {"File2", "c:\\4"}}));
  EXPECT_EQ(SendMessageW(window, LVM_GETSELECTEDCOUNT, 0, 0), 0);
}

TEST_F(WindowTest, OpensOneEntryAtATime) {
  MakeKey(kNero, {{"File1", MakeFile("1")}, {"File2", MakeFile("2")}});
  frmMain& form = Start();
  Choose(u"Nero-Burning Rom");
  form.edit.mnuEditOpenWithProgram.Tag = u"C:\\none\\hhw.exe";
  form.lvwMRU.ListItems()(1).Selected(true);
  form.lvwMRU.ListItems()(2).Selected(true);
  RecordingToolkit recorder(&CurrentToolkit());
  form.edit.mnuEditOpenWithProgram.Click();
  ASSERT_EQ(recorder.messages.size(), 1U);
  EXPECT_EQ(recorder.messages[0].text, u"Please select only 1 file.");
  EXPECT_EQ(recorder.messages[0].style, 0U);
}

TEST_F(WindowTest, AWindowThatIsGoneIsNotSubclassedAndTheErrorIsItsOwn) {
  Start();
  const auto gone = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0xABCDE));
  SetLastError(ERROR_SUCCESS);
  ASSERT_EQ(SetWindowLongPtrW(gone, GWLP_WNDPROC, 1), 0);
  const DWORD error = GetLastError();
  ASSERT_NE(error, static_cast<DWORD>(ERROR_SUCCESS));
  RecordingToolkit recorder(&CurrentToolkit());
  EXPECT_FALSE(SubclassWindow(gone, ListWindowProc, nullptr));
  ASSERT_EQ(recorder.messages.size(), 1U);
  EXPECT_EQ(recorder.messages[0].text, u"Error subclassing window &HABCDE\r\n\r\nErr# " +
                                           Decimal(static_cast<int>(error)) +
                                           u": the window's procedure can't be replaced");
  EXPECT_EQ(recorder.messages[0].style, static_cast<UINT>(MB_ICONEXCLAMATION));
  EXPECT_FALSE(UnsubclassWindow(gone));
}

TEST_F(WindowTest, ListKeepsTheShellsImageListWhileSubclassed) {
  frmMain& form = Start();
  const HWND window = form.lvwMRU.hWnd();
  const HANDLE old = GetPropW(window, W("OldWndProc"));
  EXPECT_NE(old, nullptr);
  EXPECT_TRUE(SubclassWindow(window, ListWindowProc, nullptr));
  EXPECT_EQ(GetPropW(window, W("OldWndProc")), old);
  EXPECT_EQ(SendMessageW(window, LVM_SETIMAGELIST, LVSIL_SMALL, 0), 0);
  EXPECT_TRUE(UnsubclassWindow(window));
  EXPECT_EQ(GetPropW(window, W("OldWndProc")), nullptr);
  EXPECT_FALSE(UnsubclassWindow(window));
  // The shell's list was in place all along, and goes now.
  EXPECT_NE(SendMessageW(window, LVM_SETIMAGELIST, LVSIL_SMALL, 0), 0);
}

TEST_F(WindowTest, FolderPicturesFollowTheExpansion) {
  frmMain& form = Start();
  Node& audio = Program(form, u"Audio");
  form.mnuViewExpand.Click();
  EXPECT_TRUE(audio.Expanded());
  EXPECT_EQ(audio.Image(), 2);
  EXPECT_EQ(Program(form, u"GetIt").Image(), 3);
  form.mnuCollapse.Click();
  EXPECT_FALSE(audio.Expanded());
  EXPECT_EQ(audio.Image(), 1);
}

TEST_F(WindowTest, RemembersItsPlaceWithinLimits) {
  frmMain& form = Start();
  EXPECT_EQ(Settings()["Main Width"], 9960);
  EXPECT_EQ(form.Width().count, 9960);
  EXPECT_EQ(form.Height().count, 7125);
  form.Move({3000}, {1500}, {9000}, {4500});
  CurrentToolkit().DoEvents();
  form.Unload();
  auto saved = Settings();
  EXPECT_EQ(saved["State"], 0);
  EXPECT_EQ(saved["Main Width"], 9000);
  EXPECT_EQ(saved["Main Height"], 4905);
  EXPECT_EQ(saved["Main Left"], 3000);
  EXPECT_EQ(saved["Main Top"], 1500);

  SetValue(kSettings, "State", REG_DWORD, {"\x01\0\0\0", 4});
  frmMain& again = Start();
  EXPECT_EQ(again.State(), WindowState::Normal);
  EXPECT_EQ(again.ScaleWidth(), again.DesignWidth);
}

TEST_F(WindowTest, ComesBackWhereItCanBeSeen) {
  const PixelRect left{-1600, 200, 1600, 860};
  const PixelRect first{0, 24, 1920, 1056};
  struct Row {
    PixelRect wanted;
    PixelRect seen;
  };
  const Row rows[] = {
      {{300, 200, 800, 600}, {300, 200, 800, 600}},
      {{1800, 200, 800, 600}, {1800, 200, 800, 600}},
      {{1850, 200, 800, 600}, {1120, 200, 800, 600}},
      {{-1300, 300, 800, 600}, {-1300, 300, 800, 600}},
      {{-1300, 190, 800, 600}, {-1300, 200, 800, 600}},
      {{-2500, 900, 800, 600}, {-1600, 460, 800, 600}},
      {{4000, -3000, 800, 600}, {1120, 24, 800, 600}},
      {{100, 1070, 800, 600}, {100, 480, 800, 600}},
      {{-1000, 210, 2800, 600}, {-1000, 210, 2800, 600}},
      {{10, 30, 4000, 3000}, {0, 24, 1920, 1056}},
      {{10, 30, 60, 40}, {10, 30, 60, 40}},
      {{-900, 300, 700, 5000}, {-900, 200, 700, 860}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(InSight(row.wanted, 30, {left, first}), row.seen)
        << row.wanted.left << " " << row.wanted.top;
  }
  EXPECT_EQ(InSight(rows[2].wanted, 30, {}), rows[2].wanted);

  MakeKey(kSettings, {});
  const std::pair<const char*, std::int32_t> saved[] = {
      {"Main Width", 9000}, {"Main Height", 6000}, {"Main Left", 500'000}, {"Main Top", -500'000}};
  for (const auto& [name, twips] : saved) {
    SetValue(kSettings, name, REG_DWORD, {reinterpret_cast<const char*>(&twips), sizeof twips});
  }
  const frmMain& form = Start();
  EXPECT_GE(form.Top().count, 0);
  EXPECT_LT(form.Left().count, 100'000);
  EXPECT_EQ(form.Width().count, 9000);
}

TEST_F(WindowTest, SplitterFollowsTheMouseAndKeepsItsProportion) {
  frmMain& form = Start();
  const int start = form.fraSplitter.Left();
  const int bar = form.fraSplitter.Width();
  const auto expectLayout = [&](int split) {
    EXPECT_EQ(form.fraSplitter.Left(), split);
    EXPECT_EQ(form.tvwMRU.Left(), 0);
    EXPECT_NEAR(form.tvwMRU.Width(), split, 2);
    EXPECT_NEAR(form.lvwMRU.Left(), split + bar, 2);
    EXPECT_NEAR(form.lvwMRU.Left() + form.lvwMRU.Width(), form.ScaleWidth(), 2);
    EXPECT_EQ(form.tvwMRU.Height(), form.ScaleHeight() - form.StatusBarHeight());
  };
  expectLayout(start);
  const auto twips = static_cast<float>(form.Scale().TwipsPerPixel());

  form.fraSplitter.MouseDown(kRightButton, 0, 0, 0);
  form.fraSplitter.MouseMove(kRightButton, 0, 40 * twips, 0);
  expectLayout(start);

  form.fraSplitter.MouseDown(kLeftButton, 0, 0, 0);
  form.fraSplitter.MouseMove(kLeftButton, 0, 60 * twips, 0);
  expectLayout(start + 60);
  int escape = 27;
  form.KeyPress(escape);
  EXPECT_EQ(escape, 0);
  expectLayout(start);
  form.fraSplitter.MouseUp(kLeftButton, 0, 90 * twips, 0);
  expectLayout(start);
  escape = 27;
  form.KeyPress(escape);
  EXPECT_EQ(escape, 27);

  form.fraSplitter.MouseDown(kLeftButton, 0, 0, 0);
  form.fraSplitter.MouseUp(kLeftButton, 0, 64 * twips, 0);
  expectLayout(start + 64);
  const double ratio = (start + 64.0) / form.ScaleWidth();
  form.Move(form.Left(), form.Top(), {form.Width().count + 3000}, form.Height());
  CurrentToolkit().DoEvents();
  expectLayout(static_cast<int>(std::lround(ratio * form.ScaleWidth())));

  form.fraSplitter.MouseDown(kLeftButton, 0, 0, 0);
  form.fraSplitter.MouseUp(kLeftButton, 0, -5000 * twips, 0);
  const int least = form.fraSplitter.Left();
  EXPECT_GT(least, 0);
  EXPECT_LT(least, start);
}

TEST_F(WindowTest, ProgressDrawsTheBarOverItsText) {
  frmSplash splash(BorderStyle::Splash);
  splash.Load();
  PictureBox& box = splash.picProgress;
  const auto width = static_cast<float>(box.Width());
  ShowProgress(box, 11, 11, u"Loading");
  ASSERT_EQ(box.Steps().size(), 2U);
  EXPECT_EQ(std::get<DrawCaption>(box.Steps()[0]).text, u"Loading");
  EXPECT_FLOAT_EQ(std::get<DrawBox>(box.Steps()[1]).width, width);
  ShowProgress(box, 11, 12, u"Too much");
  EXPECT_EQ(std::get<DrawCaption>(box.Steps()[0]).text, u"Loading");
  EXPECT_EQ(splash.lblInfo()[2]->Caption(), u"1.3.122");
  EXPECT_EQ(splash.lblInfo()[4]->Caption(), u"76/97");
  EXPECT_EQ(splash.lblInfo()[6]->Pointer(), MousePointer::Hand);
  splash.Unload();

  frmReadme readme;
  readme.Load();
  EXPECT_TRUE(readme.Text1.Text().starts_with(u"Version: 1.3.122\r\n\r\n\r\nWhat's New:\r\n"));
  EXPECT_EQ(readme.Caption(), u"Torvane Readme");
  readme.Unload();
}

TEST_F(WindowTest, AThousandSelectionsAndRewritesHoldNothing) {
  Start();
  MakeKey(kNero, {{"File1", "C:\\one.nrg"}, {"File2", "C:\\two.nrg"}});
  const auto selectAndRewrite = [this](int times) {
    for (int n = 0; n < times; ++n) {
      Choose(u"Nero-Burning Rom");
      form_->edit.mnuEditSelected.Click();
      CurrentToolkit().DoEvents();
      if (n % 10 == 9) WriteBack();
    }
  };
  // What is kept on purpose, pictures say, is there after the first ones.
  selectAndRewrite(100);
  const testing::Held before = testing::HeldNow();
  selectAndRewrite(1000);
  const testing::Held after = testing::HeldNow();
  EXPECT_EQ(form_->lvwMRU.ListItems().Count(), 2);
  EXPECT_LE(after.handles, before.handles);
  EXPECT_LE(after.objects, before.objects + 2);
  EXPECT_LT(after.bytes, before.bytes + 50'000) << "less than 50 bytes a time";
}

TEST_F(WindowTest, ShowsFoundListsAsTheyComeAndGo) {
  constexpr auto kFound = "Software\\TorvaneTest\\Tide;mark\\4.2\\Recent, Files";
  constexpr int kKnown = 11 + 97;
  MakeKey(kFound, {{"File1", "C:\\a.txt"}, {"File2", "C:\\b.txt"}});
  const frmMain& form = Start();
  const NodeCollection& nodes = form.tvwMRU.Nodes();
  const auto find = [&](int count) {
    Key(kKeyF5);
    for (int n = 0; n < 400 && (n < 20 || nodes.Count() != count); ++n) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      CurrentToolkit().DoEvents();
    }
    return nodes.Count();
  };
  ASSERT_EQ(find(kKnown + 2), kKnown + 2);
  EXPECT_EQ(nodes(kKnown + 1).Text(), u"Also Found");
  EXPECT_EQ(nodes(kKnown + 2).Text(), u"Tide;mark");
  EXPECT_EQ(nodes(kKnown + 2).Tip(),
            u"HKEY_CURRENT_USER\\Software\\TorvaneTest\\Tide;mark\\4.2\\Recent, Files");
  Choose(u"Tide;mark");
  ASSERT_EQ(form_->lvwMRU.ListItems().Count(), 2);
  EXPECT_EQ(RightClick().size(), 1U);

  // What can be taken back stays, and another list comes before it.
  form_->mnuEditAll_Click();
  MakeKey("Software\\TorvaneTest\\Anchor\\History", {{"a0", "C:\\a"}, {"a1", "C:\\b"}});
  EXPECT_EQ(find(kKnown + 3), kKnown + 3);
  EXPECT_EQ(nodes(kKnown + 2).Text(), u"Anchor");
  EXPECT_EQ(form_->tvwMRU.SelectedItem(), &nodes(kKnown + 3));
  form_->mnuEditUndo_Click();
  EXPECT_EQ(form_->lvwMRU.ListItems().Count(), 2);
  EXPECT_EQ(Texts(kFound).size(), 2U);

  UseKey(kFound);
  EXPECT_EQ(find(kKnown + 2), kKnown + 2);
  EXPECT_EQ(form_->tvwMRU.SelectedItem(), &nodes(kKnown + 1));
  EXPECT_EQ(form_->lvwMRU.ListItems().Count(), 0);
  UseKey("Software\\TorvaneTest\\Anchor\\History");
  EXPECT_EQ(find(kKnown), kKnown);
  EXPECT_EQ(form_->tvwMRU.SelectedItem(), &nodes(1));
}

}  // namespace
}  // namespace torvane
