// The main window: the catalogue on the left, the selected program's list on the right, a bar
// between them, the status bar below.
#pragma once

#include "menu/edit_menu.h"
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
  frmMain();

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

  /// Where the load of the catalogue shows its progress; null for nowhere.
  void ReportProgressOn(PictureBox* picture) { progress_ = picture; }
  void ShowLoading(std::int32_t count, std::int32_t number, const Text& category);
  /// Fills ilsTree: closed folder, open folder, program.
  void BuildTreeImages();

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

 protected:
  void Form_Load() override;
  void Form_Unload() override;

 private:
  void ConnectEvents();
  void AttachSystemImageList();
  void LoadWindowSettings();
  static void SaveDefaultSettings();
  void SaveWindowSettings() const;
  void ShowNode(Node& node);
  void ShowProgram(const Node& node);
  void SizeColumns() const;
  void SetExpanded(bool expanded);

  cVSplitter splitter_;
  HWND listWindow_ = nullptr;
  PictureBox* progress_ = nullptr;
  bool filling_ = false;
};

/// The program's main window, a new one where the last has been unloaded.
frmMain& MainWindow();

}  // namespace torvane
