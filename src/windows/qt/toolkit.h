// The toolkit of the Linux window: Qt 6 over the layer that stands in for Windows.
#pragma once

#include <QApplication>
#include <QTimer>
#include <memory>
#include <optional>
#include <vector>

#include "platform/posix/prefix/found_prefixes.h"
#include "windows/controls/toolkit.h"
#include "windows/qt/desktop.h"
#include "windows/qt/icons.h"
#include "windows/qt/signals.h"
#include "windows/qt/write_back.h"

namespace torvane {

class QtToolkit : public Toolkit {
 public:
  /// The arguments are Qt's; they must outlive the toolkit.
  QtToolkit(int& argumentCount, char** arguments);
  ~QtToolkit() override;

  bool Start() override;
  void MakeViews(Form& form) override;
  void DropViews(Form& form) override;
  bool Run() override;
  void DoEvents() override;
  void WhenIdle(std::function<void()> work) override;
  Text WorldName() const override;
  int ShowMessage(const Text& text, UINT style, const Text& title) override;
  void ReportError(const Text& description) override;
  void ShowPopup(Form& owner, MenuItem& menu, const MenuItem* defaultItem, POINT screen) override;
  void CopyText(const Text& text) override;
  Text BrowseFolder(Form& owner, const Text& title) override;
  Scale ScreenScale() const override;

 private:
  bool openWorld();
  /// Tells of the hives that are damaged or can't be read.
  void tellProblems();
  /// Whether a window has been shown whose first picture is to come.
  bool waitsForPaint() const;
  /// Draws the icons that the first picture went without.
  void showThemeIcons();
  /// Lets the user turn to another prefix; the program then begins anew.
  void choosePrefix(Form& mainForm);
  /// The window that a box stands over: null only where no form has one.
  QWidget* boxOwner() const;
  /// A form's view has gone, with its form or before it.
  void forget(const Form& form);

  int& argumentCount_;
  char** arguments_;
  std::unique_ptr<QApplication> application_;
  std::unique_ptr<ClosingSignals> signals_;
  std::unique_ptr<QtIcons> icons_;
  QtDesktop desktop_;
  WriteBack writeBack_;
  std::vector<std::function<void()>> idleWork_;
  QTimer idle_;
  std::vector<Form*> shown_;  ///< forms that have views
  bool running_ = false;
  std::optional<posix::FoundPrefix> next_;  ///< what the program begins anew on
};

}  // namespace torvane
