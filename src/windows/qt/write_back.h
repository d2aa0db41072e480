// When the changes that a command made are written to the files of the Windows world, and how the
// user learns that a file couldn't be written.
#pragma once

#include <QTimer>
#include <functional>
#include <string>
#include <vector>

namespace torvane {

/// Runs the user's commands and writes their changes when the loop goes idle behind a command, and
/// at the end. A file that fails is tried again behind each later command, but told again only when
/// the user gives another order or the reason is another.
class WriteBack {
 public:
  WriteBack();
  /// Runs a handler that the user has set off and that may change something: what it throws is
  /// shown, and its changes are written when the loop goes idle.
  void run(const std::function<void()>& handler);
  /// The loop is about to wait for events.
  void idle();
  /// The user has chosen a menu item.
  void newOrder() { told_.clear(); }
  /// Writes the changes now. Gives false where some can't be written, which are kept: the user has
  /// been told.
  bool writeAll();
  /// The last try, with the last word to the user.
  void finish();

 private:
  using Paragraphs = std::vector<std::string>;
  void writeAndTell();

  /// Start-up counts as the first command: it may have made the window settings.
  bool ran_ = true;
  Paragraphs told_;
  Paragraphs toTell_;  ///< until its boxes have been closed
  QTimer teller_;
};

}  // namespace torvane
