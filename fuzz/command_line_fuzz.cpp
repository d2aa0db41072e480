// Arguments that are put in quotes again split into the same. The input is the command line in the
// lower half of Unicode.
#include <vector>

#include "check.h"
#include "platform/posix/shell/command_line.h"

namespace torvane::fuzz {
namespace {

/// An argument as a program that starts another has to write it.
std::u16string Quoted(const std::u16string& argument) {
  std::u16string quoted = u"\"";
  std::size_t backslashes = 0;
  for (const char16_t unit : argument) {
    if (unit == u'"') quoted.append(backslashes + 1, u'\\');
    backslashes = unit == u'\\' ? backslashes + 1 : 0;
    quoted += unit;
  }
  return quoted.append(backslashes, u'\\') + u'"';
}

void Run(std::u16string_view line) {
  const auto arguments = posix::SplitArguments(line);
  std::u16string again;
  for (const auto& argument : arguments) again += Quoted(argument) + u' ';
  Check(posix::SplitArguments(again) == arguments, "quoted arguments are the same");
  for (const std::size_t wanted : {0U, 1U, 3U}) {
    std::size_t asked = 0;
    const auto call = posix::FindProgramCall(line, [&](const std::u16string& name) {
      return asked++ == wanted ? std::optional(name) : std::nullopt;
    });
    if (!call) continue;
    Check(!call->program.empty(), "a program has a name");
    Check(line.ends_with(call->arguments), "the arguments are the end of the line");
  }
}

}  // namespace
}  // namespace torvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::u16string line(data, data + size);
  torvane::fuzz::Run(line);
  return 0;
}
