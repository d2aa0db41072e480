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

int DesignPixels(int length) {
  return length * 15 / CurrentToolkit().TwipsPerPixel();
}

void Deliver(const std::function<void()>& event) {
  try {
    event();
  } catch (const RaisedError& error) {
    CurrentToolkit().ReportError(error.Description());
  } catch (const std::exception& error) {
    const std::string words = error.what();
    CurrentToolkit().ReportError({words.begin(), words.end()});
  }
}

Text ApplicationTitle() {
  return ReadVersionRecord().productName;
}

}  // namespace torvane
