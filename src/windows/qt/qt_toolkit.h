// The toolkit of the Linux window: Qt 6 over the layer that stands in for Windows.
#pragma once

#include <QApplication>
#include <memory>
#include <optional>
#include <vector>

#include "windows/controls/toolkit.h"
#include "windows/qt/qt_desktop.h"
#include "windows/qt/qt_pictures.h"
#include "windows/qt/qt_signals.h"
#include "windows/qt/qt_write_back.h"

namespace torvane {

class QtToolkit : public Toolkit {
 public:
  /// The arguments are Qt's; they must outlive the toolkit.
  QtToolkit(int& argumentCount, char** arguments);
  ~QtToolkit() override;

  bool Start() override;
  void MakeViews(Form& form) override;
  void DropViews(Form& form) override;
  void Run() override;
  void DoEvents() override;
  int ShowMessage(const Text& text, UINT style, const Text& title) override;
  void ReportError(const Text& description) override;
  void ShowPopup(Form& owner, MenuItem& menu, const MenuItem* defaultItem) override;
  Text BrowseFolder(Form& owner, const Text& title) override;
  int TwipsPerPixel() const override;

 private:
  bool openWorld();
  /// A form's view has gone, with its form or before it.
  void forget(const Form& form);

  int& argumentCount_;
  char** arguments_;
  std::unique_ptr<QApplication> application_;
  std::unique_ptr<ClosingSignals> signals_;
  std::unique_ptr<QtPictures> pictures_;
  QtDesktop desktop_;
  WriteBack writeBack_;
  std::vector<Form*> shown_;  ///< forms that have views
  bool running_ = false;
};

}  // namespace torvane
