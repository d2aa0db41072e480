// When the changes that a command made are written to the files of the Windows world, and how the
// user learns that a file couldn't be written.
#pragma once

#include <QTimer>
#include <functional>
#include <string>
#include <vector>

namespace torvane {

/// Runs a handler that the user has set off and that may change something: what it throws is shown,
/// and its changes are written when the loop goes idle.
void RunCommand(const std::function<void()>& handler);

/// Writes the changes when the loop goes idle behind a command, and at the end. A file that fails
/// is tried again behind each later command, but told again only when the user gives another order
/// or the reason is another.
class WriteBack {
 public:
  WriteBack();
  /// The loop is about to wait for events.
  void idle();
  /// The user has chosen a menu item.
  void newOrder() { told_.clear(); }
  /// The last try, with the last word to the user.
  void finish();

 private:
  using Paragraphs = std::vector<std::string>;
  void writeAndTell();

  Paragraphs told_;
  Paragraphs toTell_;  ///< until its boxes have been closed
  QTimer teller_;
};

}  // namespace torvane
