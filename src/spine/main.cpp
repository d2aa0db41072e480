#include "platform/extras.h"
#include "spine/basMain.h"
#include "windows/controls/toolkit.h"

int main(int argc, char** argv) {
  torvane::GuardProcess();
  const std::span<const char* const> words(argv, static_cast<std::size_t>(argc));
  if (const auto status = torvane::AnswerArguments(words.subspan(words.empty() ? 0 : 1))) {
    return *status;
  }
  const auto toolkit = torvane::MakePlatformToolkit(argc, argv);
  torvane::SetToolkit(toolkit.get());
  if (!toolkit->Start()) return 1;
  do {
    if (!torvane::Attempt(torvane::Main)) return 1;
  } while (toolkit->Run());
  return 0;
}
