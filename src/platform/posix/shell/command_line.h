// A Windows command line taken apart as Windows itself and its programs do.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::posix {

/// The arguments of a command line behind the program's name: blanks and tabs separate outside
/// double quotes; 2n backslashes before a quote are n of them and the quote, 2n+1 are n and a quote
/// that stands for itself; two quotes inside quotes are one.
std::vector<std::u16string> SplitArguments(std::u16string_view text);

/// What stands behind the first name of a command line, which is in quotes or ends at a blank.
std::u16string_view BehindProgram(std::u16string_view commandLine);

/// A command line's program and what stands behind it.
struct ProgramCall {
  std::u16string program;    ///< path or name, with its extension
  std::u16string arguments;  ///< as they stand on the command line
};

/// Finds the program of a command line. A name in quotes is the program. A bare one may hold
/// blanks: its parts up to each blank are tried from the shortest on ("C:\Program", "C:\Program
/// Files\x"), each with ".exe" behind a name that has no extension. `find` gives the full path of a
/// program that exists. Nothing where none does.
std::optional<ProgramCall> FindProgramCall(
    std::u16string_view commandLine,
    const std::function<std::optional<std::u16string>(const std::u16string&)>& find);

}  // namespace torvane::posix
