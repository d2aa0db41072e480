// An event of a control: one assignable handler, run when the view (or a test) fires it.
#pragma once

#include <functional>
#include <utility>

namespace torvane {

/// A slot for one handler. Firing an event that has none does nothing. What a handler throws goes
/// to whoever fired it; views fire through Deliver() (toolkit.h), which shows it to the user.
template <class... Arguments>
class Event {
 public:
  using Handler = std::function<void(Arguments...)>;

  Event& operator=(Handler handler) {
    handler_ = std::move(handler);
    return *this;
  }
  void operator()(Arguments... arguments) const {
    if (handler_) handler_(arguments...);
  }

 private:
  Handler handler_;
};

}  // namespace torvane
