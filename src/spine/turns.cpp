#include "spine/turns.h"

#include "windows/controls/toolkit.h"

namespace torvane {

void Turns::choose(Node& node) {
  if (!waiting_.empty() && waiting_.back().node) waiting_.pop_back();
  waiting_.push_back({&node, {}});
  serve();
}

void Turns::take(std::function<void()> work) {
  waiting_.push_back({nullptr, std::move(work)});
  serve();
}

void Turns::drop(const std::function<bool(const Node&)>& goes) {
  std::erase_if(waiting_, [&](const Turn& turn) { return turn.node && goes(*turn.node); });
}

void Turns::end() {
  ended_ = true;
  waiting_.clear();
}

void Turns::serve() {
  if (serving_) return;
  serving_ = true;
  while (!ended_ && !waiting_.empty()) {
    const Turn turn = std::move(waiting_.front());
    waiting_.pop_front();
    Attempt([&] { turn.node ? show_(*turn.node) : turn.work(); });
  }
  waiting_.clear();
  serving_ = false;
  if (!ended_) rested_();
}

}  // namespace torvane
