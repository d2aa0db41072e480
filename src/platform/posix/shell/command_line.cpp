// Two rules meet in a command line: how Windows finds the program in it, and how the program then
// reads the rest.
#include "platform/posix/shell/command_line.h"

#include <algorithm>

namespace torvane::posix {
namespace {

constexpr std::u16string_view kBlanks = u" \t";

bool IsBlank(char16_t unit) {
  return kBlanks.find(unit) != std::u16string_view::npos;
}

/// One argument from the front of `text`, which starts with no blank.
std::u16string TakeArgument(std::u16string_view& text) {
  std::u16string argument;
  bool quoted = false;
  std::size_t i = 0;
  while (i < text.size() && (quoted || !IsBlank(text[i]))) {
    const std::size_t backslashes = std::min(text.find_first_not_of(u'\\', i), text.size()) - i;
    i += backslashes;
    if (i == text.size() || text[i] != u'"') {
      argument.append(backslashes, u'\\');
      if (backslashes == 0) argument += text[i++];
      continue;
    }
    argument.append(backslashes / 2, u'\\');
    const bool doubled = quoted && i + 1 < text.size() && text[i + 1] == u'"';
    if (backslashes % 2 != 0) {
      argument += u'"';
    } else if (doubled) {
      argument += u'"';
      ++i;
    } else {
      quoted = !quoted;
    }
    ++i;
  }
  text.remove_prefix(i);
  return argument;
}

bool HasExtension(std::u16string_view program) {
  const std::size_t name = program.find_last_of(u"\\/:") + 1;
  return program.find(u'.', name) != std::u16string_view::npos;
}

std::u16string WithExtension(std::u16string_view program) {
  std::u16string name(program);
  return HasExtension(name) ? name : name + u".exe";
}

}  // namespace

std::vector<std::u16string> SplitArguments(std::u16string_view text) {
  std::vector<std::u16string> arguments;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    if (text.empty()) return arguments;
    arguments.push_back(TakeArgument(text));
  }
}

std::u16string_view BehindProgram(std::u16string_view commandLine) {
  const bool isQuoted = commandLine.starts_with(u'"');
  const std::size_t end = isQuoted ? commandLine.find(u'"', 1) : commandLine.find_first_of(kBlanks);
  if (end == std::u16string_view::npos) return {};
  return commandLine.substr(isQuoted ? end + 1 : end);
}

std::optional<ProgramCall> FindProgramCall(
    std::u16string_view commandLine,
    const std::function<std::optional<std::u16string>(const std::u16string&)>& find) {
  commandLine.remove_prefix(std::min(commandLine.find_first_not_of(kBlanks), commandLine.size()));
  if (commandLine.empty()) return std::nullopt;
  if (commandLine.front() == u'"') {
    const std::size_t close = std::min(commandLine.find(u'"', 1), commandLine.size());
    const auto program = find(WithExtension(commandLine.substr(1, close - 1)));
    if (!program) return std::nullopt;
    return ProgramCall{*program, std::u16string(BehindProgram(commandLine))};
  }
  for (std::size_t end = 0; end < commandLine.size();) {
    end = std::min(commandLine.find_first_of(kBlanks, end + 1), commandLine.size());
    if (IsBlank(commandLine[end - 1])) continue;
    if (const auto program = find(WithExtension(commandLine.substr(0, end)))) {
      return ProgramCall{*program, std::u16string(commandLine.substr(end))};
    }
  }
  return std::nullopt;
}

}  // namespace torvane::posix
