// The command line of the Linux program. It opens a window and nothing else, so all that it can be
// told is on which prefix, and all that it can be asked for is what it is, as every program in the
// search path can. Answers come before anything of a window is touched: they work over a plain
// connection and in scripts.
#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "platform/extras.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/text/code_page.h"

namespace torvane {
namespace {

constexpr int kAnswered = 0;
constexpr int kFailed = 1;

constexpr std::string_view kUsage = "Usage: torvane [--help | --version | --prefix FOLDER]\n";

constexpr std::string_view kHelp =
    "\n"
    "Opens a window that shows the lists of recent files, folders and addresses that Windows\n"
    "programs keep in a Wine prefix, and deletes entries from them.\n"
    "\n"
    "  --prefix FOLDER  opens this prefix; the folder may hold it in a folder \"pfx\"\n"
    "  --help           prints this text and ends\n"
    "  --version        prints the version and ends\n"
    "\n"
    "Without --prefix it is $WINEPREFIX, else the only one that is found: ~/.wine, and those of\n"
    "Bottles, Lutris, Heroic, Steam, umu, PlayOnLinux and CrossOver. Where there are several, a\n"
    "window asks; where there is none, a small one is made in $XDG_DATA_HOME/torvane/prefix. See\n"
    "torvane(1) for more.\n";

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

/// A text as it can be shown on a line of a terminal.
std::string Printable(std::string line) {
  const auto controls = [](unsigned char byte) { return byte < ' ' || byte == 0x7F; };
  std::ranges::replace_if(line, controls, '?');
  return line;
}

std::string Joined(std::span<const char* const> arguments) {
  std::string line;
  for (const char* const argument : arguments) line.append(" ").append(argument);
  return line;
}

/// Opens the window on the prefix in a folder, or says why that can't be.
std::optional<int> OpenOn(const char* folder) {
  try {
    posix::ChoosePrefix(posix::PrefixNamed(folder));
    return std::nullopt;
  } catch (const posix::PrefixError& error) {
    std::fprintf(stderr, "torvane: %s\n", Printable(error.what()).c_str());
    return kFailed;
  }
}

}  // namespace

// Here nothing meddles: no call shows a box, and libraries come from the system's folders anyway.
void GuardProcess() {}

std::optional<int> AnswerArguments(std::span<const char* const> arguments) {
  if (arguments.empty()) return std::nullopt;
  const std::string_view only = arguments.size() == 1 ? arguments.front() : "";
  if (only == "--help") return Print(std::string(kUsage).append(kHelp));
  if (only == "--version") return Print(VersionLines());
  const bool names = arguments.size() == 2 && arguments.front() == std::string_view("--prefix");
  if (names && *arguments.back() != '\0') return OpenOn(arguments.back());
  const std::string refusal =
      "torvane: sorry, it can't be called with:" + Printable(Joined(arguments));
  std::fprintf(stderr, "%s\n%s", refusal.c_str(), kUsage.data());
  return kFailed;
}

std::u16string WorldTitle() {
  return posix::FromUtf8(posix::ChosenTitle());
}

}  // namespace torvane
