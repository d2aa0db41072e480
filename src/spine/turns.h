// What the user asks of the main window is done one thing after the other.
//
// A list that is being filled, a command with a box open and a menu that is up all let messages
// run, and with them comes more: a node that a screen reader chooses, a menu item, a key. Were it
// done in the middle, the list would come to hold another program's entries than the tree says.
#pragma once

#include <deque>
#include <functional>

#include "windows/controls/tree.h"

namespace torvane {

/// Does one thing at a time. What comes meanwhile waits its turn, in order; of the choices that
/// wait one behind the other only the last counts.
class Turns {
 public:
  /// `show` shows the list of a node; `rested` runs when nothing waits any more.
  Turns(std::function<void(Node&)> show, std::function<void()> rested)
      : show_(std::move(show)), rested_(std::move(rested)) {}

  /// Shows a node's list when it is its turn: at once where nothing is being done.
  void choose(Node& node);
  /// Does a piece of work when it is its turn. What it throws is told to the user.
  void take(std::function<void()> work);
  /// Forgets the choices that wait of nodes that go.
  void drop(const std::function<bool(const Node&)>& goes);
  /// Whether the next turn is another choice, so that this one needn't be shown any more.
  bool isOvertaken() const { return !waiting_.empty() && waiting_.front().node; }
  /// Nothing more is done: the window goes.
  void end();

 private:
  struct Turn {
    Node* node = nullptr;  ///< the choice; null for work
    std::function<void()> work;
  };
  void serve();

  std::function<void(Node&)> show_;
  std::function<void()> rested_;
  std::deque<Turn> waiting_;
  bool serving_ = false;
  bool ended_ = false;
};

}  // namespace torvane
