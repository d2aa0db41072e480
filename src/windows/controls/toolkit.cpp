#include "windows/controls/toolkit.h"

#include <stdexcept>

#include "platform/extras.h"
#include "storage/raised_error.h"

namespace torvane {
namespace {

Toolkit*& Current() {
  static Toolkit* current = nullptr;
  return current;
}

}  // namespace

Toolkit& CurrentToolkit() {
  if (!Current()) throw std::logic_error("no toolkit is in place");
  return *Current();
}

void SetToolkit(Toolkit* toolkit) {
  Current() = toolkit;
}

bool Attempt(const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const RaisedError& error) {
    CurrentToolkit().ReportError(error.Description());
  } catch (const std::exception& error) {
    const std::string words = error.what();
    CurrentToolkit().ReportError({words.begin(), words.end()});
  }
  return false;
}

void Deliver(const std::function<void()>& event) {
  Attempt(event);
}

Text ApplicationTitle() {
  return ReadVersionRecord().productName;
}

}  // namespace torvane
