// The main window: the catalogue on the left, the selected program's list on the right, a bar
// between them, the status bar below.
#pragma once

#include "editing/delete_commands.h"
#include "finding/known_lists.h"
#include "menu/edit_menu.h"
#include "spine/basMain.h"
#include "spine/found_nodes.h"
#include "spine/turns.h"
#include "windows/cVSplitter.h"
#include "windows/controls/form.h"
#include "windows/controls/image_list.h"
#include "windows/controls/list.h"
#include "windows/controls/picture_box.h"
#include "windows/controls/tree.h"

namespace torvane {

/// The main window. Handlers keep their controls' names.
class frmMain : public Form {
 public:
  /// `progress` hears of the load of the catalogue, and of nothing after it.
  explicit frmMain(LoadProgress progress = {});

  Tree tvwMRU{*this, u"Programs"};
  List lvwMRU{*this, u"Entries"};
  Frame fraSplitter{*this, u"Splitter"};
  StatusBar sbrInfo{*this, u"Status", {0, 80, 80}};
  PictureBox picTemp{*this, u"Drawing surface"};
  ImageList ilsTree;

  MenuItem& mnuView;
  MenuItem& mnuViewExpand;
  MenuItem& mnuCollapse;
  MenuItem& mnHelp;
  MenuItem& mnuHelpReadme;
  MenuItem& mnuHelpSep;
  MenuItem& mnuHelpAbout;
  EditMenu edit;

  /// Looks, when the loop next has nothing to do, which programs have a list, and dims the others
  /// in the tree.
  void LookForLists();
  /// Looks for lists that nobody named, whenever the loop has nothing to do, and shows them in the
  /// tree when all keys have been looked at.
  void FindLists();
  /// Tells of the rows of the user's own lists that were left out; once.
  void TellLeftOutRows();

  void tvwMRU_NodeClick(Node& node);
  void tvwMRU_Expand(Node& node);
  void tvwMRU_Collapse(Node& node);
  void mnuViewExpand_Click();
  void mnuCollapse_Click();
  void mnuHelpReadme_Click();
  void mnuHelpAbout_Click();
  void mnuEditOpenWithProgram_Click();
  void mnuEditSelected_Click();
  void mnuEditMissing_Click();
  void mnuEditAll_Click();
  void Form_KeyDown(int& KeyCode, int Shift);
  void mnuEditUndo_Click();

 protected:
  void Form_Load() override;
  void Form_Rescale() override;
  void Form_Unload() override;

 private:
  void ConnectEvents();
  LRESULT OnListMessage(HWND window, LPARAM lParam);
  // The answers to keys: whether the key had something to do.
  bool DeleteKey();
  bool SelectAllKey();
  bool CopyKey();
  bool UndoKey();
  bool ReadAnewKey();
  bool DropSelectionKey();
  bool FirstRowKey();
  void AttachSystemImageList();
  /// Fills ilsTree: closed folder, open folder, program.
  void BuildTreeImages();
  void LoadWindowSettings();
  static void SaveDefaultSettings();
  void SaveWindowSettings() const;
  void ShowListOf(Node& node);
  void ShowNode(Node& node);
  void ShowProgram(const Node& node);
  void SizeColumns() const;
  void SetExpanded(bool expanded);
  DeleteContext Deleting();
  void LoadOwnLists();
  void FindMore();
  void ShowFound(std::vector<FoundList> lists);
  void DimTree();

  cVSplitter splitter_;
  UndoStore undo_;
  HWND listWindow_ = nullptr;
  LoadProgress progress_;
  Turns turns_{[this](Node& node) { ShowListOf(node); }, [this] { LookForLists(); }};
  std::vector<CategoryRow> knownRows_;  ///< the catalogue's and the user's own
  Text leftOut_;                        ///< what there is to tell of the user's own
  FoundNodes found_{tvwMRU};
  std::shared_ptr<ListFinder> finder_;  ///< while it looks
  /// Set while a look at all lists is to come; the form may go before it.
  std::shared_ptr<bool> dimming_ = std::make_shared<bool>(false);
};

/// Makes the program's main window, in place of one that has been unloaded.
frmMain& MakeMainWindow(LoadProgress progress);
/// The program's main window; there must be one.
frmMain& MainWindow();

}  // namespace torvane
