#include "spine/frmMain.h"

#include "editing/delete_commands.h"
#include "menu/open_with.h"
#include "platform/extras.h"
#include "platform/winapi.h"
#include "readers/entry_list.h"
#include "spine/basMain.h"
#include "spine/dispatch.h"
#include "windows/controls/toolkit.h"
#include "windows/frmReadme.h"
#include "windows/frmSplash.h"
#include "windows/mWndProc.h"

namespace torvane {
namespace {

// Numbers of the tree's images.
constexpr int kClosedFolder = 1;
constexpr int kOpenFolder = 2;

constexpr int kProgramIcon = 104;
constexpr int kIconSize = 16;

// Marks that a list is being filled for as long as this lives.
class Filling {
 public:
  explicit Filling(bool& flag) : flag_(flag) { flag_ = true; }
  Filling(const Filling&) = delete;
  Filling& operator=(const Filling&) = delete;
  ~Filling() { flag_ = false; }

 private:
  bool& flag_;
};

}  // namespace

frmMain& MainWindow() {
  static std::unique_ptr<frmMain> form;
  if (!form || form->Unloaded()) form = std::make_unique<frmMain>();
  return *form;
}

frmMain::frmMain()
    : Form(BorderStyle::Sizable),
      mnuView(MenuBar().Add(u"View")),
      mnuViewExpand(mnuView.Add(u"Expand Tree")),
      mnuCollapse(mnuView.Add(u"Collapse Tree")),
      mnHelp(MenuBar().Add(u"Help")),
      mnuHelpReadme(mnHelp.Add(u"Readme...")),
      mnuHelpSep(mnHelp.Add(u"-")),
      mnuHelpAbout(mnHelp.Add(u"About...")),
      edit(MenuBar()) {
  DesignWidth = DesignPixels(656);
  DesignHeight = DesignPixels(448);
  const int barHeight = DesignPixels(20);
  const int paneHeight = DesignHeight - barHeight;
  const int treeWidth = DesignPixels(200);
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
  mnuViewExpand.Click = [this] { mnuViewExpand_Click(); };
  mnuCollapse.Click = [this] { mnuCollapse_Click(); };
  mnuHelpReadme.Click = [this] { mnuHelpReadme_Click(); };
  mnuHelpAbout.Click = [this] { mnuHelpAbout_Click(); };
  edit.mnuEditOpenWithProgram.Click = [this] { mnuEditOpenWithProgram_Click(); };
  edit.mnuEditSelected.Click = [this] { mnuEditSelected_Click(); };
  edit.mnuEditMissing.Click = [this] { mnuEditMissing_Click(); };
  edit.mnuEditAll.Click = [this] { mnuEditAll_Click(); };
}

void frmMain::Form_Load() {
  Caption(ApplicationTitle());
  CompleteShellImageList();
  KeyPreview = true;
  splitter_.SetControls(*this, tvwMRU, lvwMRU, fraSplitter);
  splitter_.Left(tvwMRU.Width());
  splitter_.TrackSplit(true);

  listWindow_ = lvwMRU.hWnd();
  AttachSystemImageList();
  SetListNotifyHandler([this](HWND window, LPARAM lParam) {
    return OnListNotify({lvwMRU, tvwMRU, edit}, window, lParam);
  });
  SubclassWindow(listWindow_, ListWindowProc, nullptr);
  SendMessageA(listWindow_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT,
               LVS_EX_FULLROWSELECT);
  // A prefix or profile that can only be read is still there to be looked at.
  Deliver([this] { LoadWindowSettings(); });
  LoadCatalogue();
}

// The image list is the shell's: the control must not destroy it. It goes in before the list is
// subclassed, since from then on nothing can change it.
void frmMain::AttachSystemImageList() {
  const LONG_PTR style = GetWindowLongPtrA(listWindow_, GWL_STYLE);
  SetWindowLongPtrA(listWindow_, GWL_STYLE,
                    (style | LVS_SHAREIMAGELISTS) & ~static_cast<LONG_PTR>(WS_BORDER));
  SetListImageList(listWindow_, static_cast<LPARAM>(GetSystemImageList(SHGFI_SMALLICON)),
                   LVSIL_SMALL);
}

void frmMain::Form_Unload() {
  // Settings that can't be saved don't keep the window from closing.
  Deliver([this] { SaveWindowSettings(); });
  Hide();
  ClearEntryList(lvwMRU);
  UnsubclassWindow(listWindow_);
  SetListImageList(listWindow_, 0, LVSIL_SMALL);
  DeleteIconFiles();
}

void frmMain::ShowLoading(std::int32_t count, std::int32_t number, const Text& category) {
  if (progress_) ShowProgress(*progress_, count, number, u"Loading MRU Data (" + category + u")");
}

void frmMain::BuildTreeImages() {
  std::string buffer(255, ' ');
  GetSystemDirectoryA(buffer.data(), static_cast<UINT>(buffer.size()));
  const std::string folder = buffer.substr(0, buffer.find('\0'));
  constexpr UINT kClosed = SHGFI_SYSICONINDEX | SHGFI_SMALLICON;
  for (const UINT flags : {kClosed, kClosed | SHGFI_OPENICON}) {
    SHFILEINFOA info{};
    SHGetFileInfoA(folder.c_str(), 0, &info, sizeof info, flags);
    picTemp.Cls();
    picTemp.PaintShellIcon(info.iIcon, 0, 0);
    ilsTree.Add(picTemp.Image());
  }
  picTemp.Cls();
  picTemp.PaintResourceIcon(kProgramIcon, {0, 0, kIconSize, kIconSize});
  ilsTree.Add(picTemp.Image());
}

// A click that arrives while a list is being filled is dropped: the fill lets messages run.
void frmMain::tvwMRU_NodeClick(Node& node) {
  if (filling_) return;
  const Filling filling(filling_);
  const Hourglass hourglass(*this);
  ClearEntryList(lvwMRU);
  ShowNode(node);
  SizeColumns();
}

void frmMain::ShowNode(Node& node) {
  const bool isCategory = node.Tag().empty();
  if (isCategory) {
    sbrInfo.Panels(1).Text(node.Text());
  } else {
    ShowProgram(node);
  }
}

void frmMain::ShowProgram(const Node& node) {
  const MruEntry entry = EntryFromNode(node.Text(), node.Tag());
  lvwMRU.Tag(entry.ListType);
  FillByListType(entry, lvwMRU);
  sbrInfo.Panels(1).Text(node.Parent()->Text() + u"\\" + node.Text());
  sbrInfo.Panels(2).Text(u"Total: " + Decimal(Counters().TotalCount));
  sbrInfo.Panels(3).Text(u"Missing: " + Decimal(Counters().MissingCount));
}

void frmMain::SizeColumns() const {
  for (int column = 0; column < lvwMRU.ColumnHeaders().Count(); ++column) {
    SendMessageA(listWindow_, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column),
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

void frmMain::mnuEditSelected_Click() {
  DeleteSelectedEntries({lvwMRU, sbrInfo, tvwMRU});
}

void frmMain::mnuEditMissing_Click() {
  DeleteMissingEntries({lvwMRU, sbrInfo, tvwMRU});
}

void frmMain::mnuEditAll_Click() {
  DeleteAllEntries({lvwMRU, sbrInfo, tvwMRU});
}

}  // namespace torvane
