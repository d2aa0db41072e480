#include "spine/basMain.h"
#include "storage/raised_error.h"
#include "windows/controls/toolkit.h"

int main(int argc, char** argv) {
  const auto toolkit = torvane::MakePlatformToolkit(argc, argv);
  torvane::SetToolkit(toolkit.get());
  if (!toolkit->Start()) return 1;
  try {
    torvane::Main();
  } catch (const torvane::RaisedError& error) {
    toolkit->ReportError(error.Description());
    return 1;
  }
  toolkit->Run();
  return 0;
}
