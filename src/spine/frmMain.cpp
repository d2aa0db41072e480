#include "spine/frmMain.h"

#include "menu/open_with.h"
#include "platform/extras.h"
#include "platform/resource_numbers.h"
#include "platform/winapi.h"
#include "readers/basListFill.h"
#include "windows/controls/toolkit.h"
#include "windows/frmReadme.h"
#include "windows/frmSplash.h"
#include "windows/mWndProc.h"

namespace torvane {
namespace {

// Numbers of the tree's images.
constexpr int kClosedFolder = 1;
constexpr int kOpenFolder = 2;

constexpr int kIconSize = 16;

/// What the list says before a program is chosen.
Text InvitingText() {
  const Text world = CurrentToolkit().WorldName();
  return u"Choose a program on the left to see its list." +
         (world.empty() ? world : u"\n\n" + world);
}

std::unique_ptr<frmMain>& TheMainWindow() {
  static std::unique_ptr<frmMain> form;
  return form;
}

}  // namespace

frmMain& MakeMainWindow(LoadProgress progress) {
  TheMainWindow() = std::make_unique<frmMain>(std::move(progress));
  return MainWindow();
}

frmMain& MainWindow() {
  return *TheMainWindow();
}

frmMain::frmMain(LoadProgress progress)
    : Form(BorderStyle::Sizable),
      mnuView(MenuBar().Add(u"View")),
      mnuViewExpand(mnuView.Add(u"Expand Tree")),
      mnuCollapse(mnuView.Add(u"Collapse Tree")),
      mnHelp(MenuBar().Add(u"Help")),
      mnuHelpReadme(mnHelp.Add(u"Readme...")),
      mnuHelpSep(mnHelp.Add(u"-")),
      mnuHelpAbout(mnHelp.Add(u"About...")),
      edit(MenuBar()),
      progress_(std::move(progress)) {
  DesignWidth = Scale().Design(656);
  DesignHeight = Scale().Design(448);
  const int barHeight = Scale().Design(20);
  const int paneHeight = DesignHeight - barHeight;
  const int treeWidth = Scale().Design(200);
  tvwMRU.Move({0, 0, treeWidth, paneHeight});
  lvwMRU.Move({treeWidth, 0, DesignWidth - treeWidth, paneHeight});
  fraSplitter.Move({treeWidth, 0, 0, paneHeight});
  sbrInfo.Move({0, paneHeight, DesignWidth, barHeight});
  picTemp.Move({0, 0, kIconSize, kIconSize});
  picTemp.BackColor = SystemColor::WindowBackground;
  picTemp.Visible(false);
  ConnectEvents();
}

void frmMain::ConnectEvents() {
  tvwMRU.NodeClick = [this](Node& node) { tvwMRU_NodeClick(node); };
  tvwMRU.Expand = [this](Node& node) { tvwMRU_Expand(node); };
  tvwMRU.Collapse = [this](Node& node) { tvwMRU_Collapse(node); };
  mnuViewExpand.Click = [this] { turns_.take([this] { mnuViewExpand_Click(); }); };
  mnuCollapse.Click = [this] { turns_.take([this] { mnuCollapse_Click(); }); };
  mnuHelpReadme.Click = [this] { turns_.take([this] { mnuHelpReadme_Click(); }); };
  mnuHelpAbout.Click = [this] { turns_.take([this] { mnuHelpAbout_Click(); }); };
  // These are chosen in the list's popup, within its turn.
  edit.mnuEditOpenWithProgram.Click = [this] { mnuEditOpenWithProgram_Click(); };
  edit.mnuEditSelected.Click = [this] { mnuEditSelected_Click(); };
  edit.mnuEditMissing.Click = [this] { mnuEditMissing_Click(); };
  edit.mnuEditAll.Click = [this] { mnuEditAll_Click(); };
  Activate = [this] { LookForLists(); };
  KeyDown = [this](int& key, int held) { Form_KeyDown(key, held); };
  edit.mnuEditUndo.Click = [this] { mnuEditUndo_Click(); };
}

void frmMain::Form_Load() {
  const Text world = WorldTitle();
  Caption(world.empty() ? ApplicationTitle() : ApplicationTitle() + u" \u2013 " + world);
  CompleteShellImageList();
  KeyPreview = true;
  splitter_.SetControls(*this, tvwMRU, lvwMRU, fraSplitter);
  splitter_.Left(tvwMRU.Width());
  splitter_.TrackSplit(true);

  listWindow_ = lvwMRU.hWnd();
  AttachSystemImageList();
  SetListNotifyHandler(
      [this](HWND window, LPARAM lParam) { return OnListMessage(window, lParam); });
  SubclassWindow(listWindow_, ListWindowProc, nullptr);
  SendMessageW(listWindow_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT,
               LVS_EX_FULLROWSELECT);
  // A prefix or profile that can only be read is still there to be looked at.
  Attempt([this] { LoadWindowSettings(); });
  BuildTreeImages();
  tvwMRU.Images(&ilsTree);
  lvwMRU.EmptyText(InvitingText());
  LoadCatalogue(tvwMRU, std::exchange(progress_, nullptr));
  LoadOwnLists();
}

void frmMain::Form_Rescale() {
  splitter_.Rescale();
}

// The image list is the shell's: the control must not destroy it. It goes in before the list is
// subclassed, since from then on nothing can change it.
void frmMain::AttachSystemImageList() {
  const LONG_PTR style = GetWindowLongPtrW(listWindow_, GWL_STYLE);
  SetWindowLongPtrW(listWindow_, GWL_STYLE,
                    (style | LVS_SHAREIMAGELISTS) & ~static_cast<LONG_PTR>(WS_BORDER));
  SetListImageList(listWindow_, static_cast<LPARAM>(GetSystemImageList(SHGFI_SMALLICON)),
                   LVSIL_SMALL);
}

// A right-click keeps its place while it waits for its turn.
LRESULT frmMain::OnListMessage(HWND window, LPARAM lParam) {
  if (reinterpret_cast<const NMHDR*>(lParam)->code != NM_RCLICK) return 0;
  turns_.take([this, window, click = *reinterpret_cast<const NMITEMACTIVATE*>(lParam)] {
    OnListNotify({lvwMRU, tvwMRU, edit, undo_}, window, reinterpret_cast<LPARAM>(&click));
  });
  return 1;
}

void frmMain::Form_Unload() {
  turns_.end();
  // Settings that can't be saved don't keep the window from closing.
  Attempt([this] { SaveWindowSettings(); });
  Hide();
  ClearEntryList(lvwMRU);
  UnsubclassWindow(listWindow_);
  SetListImageList(listWindow_, 0, LVSIL_SMALL);
  DeleteIconFiles();
}

void frmMain::BuildTreeImages() {
  const Text folder = GetSystemFolder();
  constexpr UINT kClosed = SHGFI_SYSICONINDEX | SHGFI_SMALLICON;
  for (const UINT flags : {kClosed, kClosed | SHGFI_OPENICON}) {
    SHFILEINFOW info{};
    SHGetFileInfoW(Wide(folder), 0, &info, sizeof info, flags);
    picTemp.Cls();
    picTemp.PaintShellIcon(info.iIcon, 0, 0);
    ilsTree.Add(picTemp.Image());
  }
  picTemp.Cls();
  picTemp.PaintResourceIcon(resource::kProgramIcon, {0, 0, kIconSize, kIconSize});
  ilsTree.Add(picTemp.Image());
}

void frmMain::tvwMRU_NodeClick(Node& node) {
  turns_.choose(node);
}

void frmMain::ShowListOf(Node& node) {
  const Hourglass hourglass(*this);
  lvwMRU.EmptyText({});
  ClearEntryList(lvwMRU);
  // Messages have run: the window may have gone, or another node may have been chosen.
  if (!Loaded() || turns_.isOvertaken()) return;
  ShowNode(node);
  SizeColumns();
  ShowUndoHint(Deleting());
}

void frmMain::ShowNode(Node& node) {
  const bool isCategory = node.Tag().empty();
  if (isCategory) {
    lvwMRU.EmptyText(InvitingText());
    sbrInfo.Panels(1).Text(node.Text());
  } else {
    ShowProgram(node);
  }
}

void frmMain::ShowProgram(const Node& node) {
  const FoundList* found = found_.ListOf(node);
  const MruEntry entry = found ? found->description.entry : EntryFromNode(node.Text(), node.Tag());
  lvwMRU.Tag(entry.ListType);
  // A folder that can't be kept is told; the list is empty then.
  Attempt([&] { found ? FillList(found->description, lvwMRU) : FillByListType(entry, lvwMRU); });
  lvwMRU.EmptyText(u"Nothing is stored here.");
  sbrInfo.Panels(1).Text(node.Parent()->Text() + u"\\" + node.Text());
  sbrInfo.Panels(2).Text(u"Total: " + Decimal(Counters().TotalCount));
  sbrInfo.Panels(3).Text(u"Missing: " + Decimal(Counters().MissingCount));
}

void frmMain::SizeColumns() const {
  for (int column = 0; column < lvwMRU.ColumnHeaders().Count(); ++column) {
    SendMessageW(listWindow_, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column),
                 LVSCW_AUTOSIZE_USEHEADER);
  }
}

void frmMain::tvwMRU_Expand(Node& node) {
  node.Image(node.Expanded() ? kOpenFolder : kClosedFolder);
}

void frmMain::tvwMRU_Collapse(Node& node) {
  node.Image(node.Expanded() ? kOpenFolder : kClosedFolder);
}

void frmMain::mnuViewExpand_Click() {
  SetExpanded(true);
}

void frmMain::mnuCollapse_Click() {
  SetExpanded(false);
}

void frmMain::SetExpanded(bool expanded) {
  for (int index = 1; index <= tvwMRU.Nodes().Count(); ++index) {
    tvwMRU.Nodes()(index).Expanded(expanded);
  }
}

void frmMain::mnuHelpReadme_Click() {
  frmReadme readme;
  readme.ShowModal(*this);
}

void frmMain::mnuHelpAbout_Click() {
  frmSplash about(BorderStyle::Dialog);
  about.picProgress.Visible(false);
  about.cmdOk.Visible(true);
  about.ShowModal(*this);
}

void frmMain::mnuEditOpenWithProgram_Click() {
  OpenWithProgram(edit.mnuEditOpenWithProgram.Tag, lvwMRU);
}

DeleteContext frmMain::Deleting() {
  return {lvwMRU, sbrInfo, tvwMRU, undo_};
}

void frmMain::mnuEditUndo_Click() {
  UndoDelete(Deleting());
}

void frmMain::mnuEditSelected_Click() {
  DeleteSelectedEntries(Deleting());
}

void frmMain::mnuEditMissing_Click() {
  DeleteMissingEntries(Deleting());
}

void frmMain::mnuEditAll_Click() {
  DeleteAllEntries(Deleting());
}

}  // namespace torvane
