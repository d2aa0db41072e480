// The command line of the Linux program. It opens a window and nothing else, so all that it can be
// asked for is what it is, as every program in the search path can. Both answers come before
// anything of a window or a prefix is touched: they work over a plain connection and in scripts.
#include <algorithm>
#include <cstdio>
#include <string_view>

#include "platform/extras.h"
#include "platform/posix/code_page.h"

namespace torvane {
namespace {

constexpr int kAnswered = 0;
constexpr int kFailed = 1;

constexpr std::string_view kUsage = "Usage: torvane [--help | --version]\n";

constexpr std::string_view kHelp =
    "\n"
    "Opens a window that shows the lists of recent files, folders and addresses that Windows\n"
    "programs keep in a Wine prefix, and deletes entries from them.\n"
    "\n"
    "  --help     prints this text and ends\n"
    "  --version  prints the version and ends\n"
    "\n"
    "The prefix is $WINEPREFIX, else ~/.wine; where there is neither, a small one is made in\n"
    "$XDG_DATA_HOME/torvane/prefix. See torvane(1) for more.\n";

std::string VersionLines() {
  const VersionRecord version = ReadVersionRecord();
  return posix::ToUtf8(version.productName) + " " + std::to_string(version.major) + "." +
         std::to_string(version.minor) + "." + std::to_string(version.revision) + "\n" +
         posix::ToUtf8(version.legalNotice) + "\n";
}

/// Gives kFailed where the text doesn't reach its reader, as with a full disk.
int Print(const std::string& text) {
  if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return kAnswered;
  std::perror("torvane");
  return kFailed;
}

/// The arguments as they can be shown on a line of a terminal.
std::string Printable(std::span<const char* const> arguments) {
  std::string line;
  for (const char* const argument : arguments) line.append(" ").append(argument);
  const auto controls = [](unsigned char byte) { return byte < ' ' || byte == 0x7F; };
  std::ranges::replace_if(line, controls, '?');
  return line;
}

}  // namespace

std::optional<int> AnswerArguments(std::span<const char* const> arguments) {
  if (arguments.empty()) return std::nullopt;
  const std::string_view only = arguments.size() == 1 ? arguments.front() : "";
  if (only == "--help") return Print(std::string(kUsage).append(kHelp));
  if (only == "--version") return Print(VersionLines());
  const std::string refusal = "torvane: sorry, it can't be called with:" + Printable(arguments);
  std::fprintf(stderr, "%s\n%s", refusal.c_str(), kUsage.data());
  return kFailed;
}

}  // namespace torvane
