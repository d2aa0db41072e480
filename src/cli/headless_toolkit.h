// The toolkit of a program without a window: models have no views, and what a window would ask the
// user, the arguments answer.
#pragma once

#include <utility>

#include "windows/controls/toolkit.h"

namespace torvane {

/// Puts itself in place for its lifetime.
class HeadlessToolkit : public Toolkit {
 public:
  /// `folder` is the answer of the folder dialogue, empty for none.
  explicit HeadlessToolkit(Text folder) : folder_(std::move(folder)) { SetToolkit(this); }
  HeadlessToolkit(const HeadlessToolkit&) = delete;
  HeadlessToolkit& operator=(const HeadlessToolkit&) = delete;
  ~HeadlessToolkit() override { SetToolkit(nullptr); }

  bool Start() override { return true; }
  void MakeViews(Form& /*form*/) override {}
  void DropViews(Form& /*form*/) override {}
  bool Run() override { return false; }
  void DoEvents() override {}
  void WhenIdle(std::function<void()> /*work*/) override {}
  Text WorldName() const override { return {}; }
  int ShowMessage(const Text& /*text*/, UINT /*style*/, const Text& /*title*/) override {
    return IDCANCEL;
  }
  void ReportError(const Text& /*description*/) override {}
  void ShowPopup(Form& /*owner*/, MenuItem& /*menu*/, const MenuItem* /*defaultItem*/,
                 POINT /*screen*/) override {}
  void CopyText(const Text& /*text*/) override {}
  Text BrowseFolder(Form& /*owner*/, const Text& /*title*/) override { return folder_; }
  Scale ScreenScale() const override { return {}; }

 private:
  Text folder_;
};

}  // namespace torvane
