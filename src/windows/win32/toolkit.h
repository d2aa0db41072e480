// The toolkit over the system's own windows and controls.
#pragma once

#include <vector>

#include "windows/controls/toolkit.h"
#include "windows/win32/form.h"

namespace torvane {

class Win32Toolkit : public Toolkit {
 public:
  Win32Toolkit() = default;
  ~Win32Toolkit() override;
  Win32Toolkit(const Win32Toolkit&) = delete;
  Win32Toolkit& operator=(const Win32Toolkit&) = delete;

  bool Start() override;
  void MakeViews(Form& form) override;
  void DropViews(Form& form) override;
  bool Run() override;
  void DoEvents() override;
  void WhenIdle(std::function<void()> work) override;
  Text WorldName() const override { return {}; }
  int ShowMessage(const Text& text, UINT style, const Text& title) override;
  void ReportError(const Text& description) override;
  void ShowPopup(Form& owner, MenuItem& menu, const MenuItem* defaultItem, POINT screen) override;
  void CopyText(const Text& text) override;
  Text BrowseFolder(Form& owner, const Text& title) override;
  Scale ScreenScale() const override;

  // What the views of forms ask.

  void formMade(Win32Form& form) { forms_.push_back(&form); }
  void formGone(Win32Form& form) { std::erase(forms_, &form); }
  /// Destroys a window when none of its messages is running any more.
  void destroyLater(UniqueWindow window);
  /// Runs messages until the flag is set.
  void runUntil(const bool& done);

 private:
  class Running;

  /// The window that a box of the system's stands over: null only where no form has one.
  HWND boxOwner() const;
  /// Waits for a message and runs it; false when the process is asked to end.
  bool runOne();
  void run(MSG& message);
  static void CALLBACK OnIdle(HWND window, UINT message, UINT_PTR timer, DWORD time);
  Win32Form* formOf(HWND window) const;
  void destroyIdle();

  bool oleStarted_ = false;
  std::vector<Win32Form*> forms_;
  /// The top-level windows whose messages are running, outermost first.
  std::vector<HWND> running_;
  std::vector<UniqueWindow> leaving_;
};

}  // namespace torvane
