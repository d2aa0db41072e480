// The toolkit: what the program asks of the platform's windows as a whole. One implementation a
// platform (windows/qt, windows/win32); tests without a window have a small one of their own.
#pragma once

#include <functional>
#include <memory>

#include "windows/controls/form.h"

namespace torvane {

/// Makes views, runs the loop, shows the modal windows that are the platform's own.
class Toolkit {
 public:
  virtual ~Toolkit() = default;

  /// Gets the platform ready: the display, and the Windows world behind it. Where that fails the
  /// user has been told, the result is false, and the program ends with status 1.
  virtual bool Start() = 0;
  /// Makes the views of a form and of its controls, hidden.
  virtual void MakeViews(Form& form) = 0;
  /// Lets a form's views go; a view that is running a handler lives until that has returned.
  virtual void DropViews(Form& form) = 0;
  /// Runs the loop until no form has views any more. Gives whether the program is to begin anew:
  /// the user has turned to another Windows world, which is open.
  virtual bool Run() = 0;
  /// Lets the messages that wait run, but for the user's keys and mouse: those keep their order
  /// and are served behind what is being done.
  virtual void DoEvents() = 0;

  /// Runs a piece of work, once, when nothing else waits any more.
  virtual void WhenIdle(std::function<void()> work) = 0;
  /// Which Windows world the lists come from; empty where there is only one.
  virtual Text WorldName() const = 0;

  /// A message box over the active window; `style` has the MB_ bits. Gives IDOK or IDCANCEL.
  virtual int ShowMessage(const Text& text, UINT style, const Text& title) = 0;
  /// Tells the user of an error that ended a command: the description, and what the platform adds.
  virtual void ReportError(const Text& description) = 0;
  /// Pops a menu up at a place of the screen and runs the chosen item's Click; returns when it is
  /// closed. `defaultItem` is shown bold, null for none.
  virtual void ShowPopup(Form& owner, MenuItem& menu, const MenuItem* defaultItem,
                         POINT screen) = 0;
  /// Puts a text on the clipboard.
  virtual void CopyText(const Text& text) = 0;
  /// The folder dialogue, modal to `owner`: the chosen folder as a Windows path, empty on cancel.
  virtual Text BrowseFolder(Form& owner, const Text& title) = 0;
  /// The scale of the first screen, which forms are made for.
  virtual Scale ScreenScale() const = 0;
};

/// The running toolkit. There must be one.
Toolkit& CurrentToolkit();
/// Puts a toolkit in place (null takes it away again); the caller keeps it alive.
void SetToolkit(Toolkit* toolkit);

/// The platform's toolkit, from whichever view library is linked in.
std::unique_ptr<Toolkit> MakePlatformToolkit(int& argumentCount, char** arguments);

/// Runs a piece of work that may fail without ending the program: an error that nothing traps ends
/// the work here and is reported to the user. Gives whether it came to its end.
bool Attempt(const std::function<void()>& work);

/// Runs an event's handler for a view, as an attempt.
void Deliver(const std::function<void()>& event);

/// The application's title, for message boxes without one of their own.
Text ApplicationTitle();

}  // namespace torvane
