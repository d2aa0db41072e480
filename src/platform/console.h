// What a program without a window asks of its platform: its arguments and streams, files of its
// own, and which Windows world it works on.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace torvane {

/// The arguments behind the program's name, in UTF-8.
std::vector<std::string> ConsoleArguments(int count, char** arguments);

enum class Stream { Output, Errors };
bool IsTerminal(Stream stream);
/// Makes the streams fit for what follows: a console shows UTF-8 and colours, a file that is opened
/// doesn't take the place of a stream that is closed, and a reader that goes away ends no program.
void PrepareConsole();
/// Writes bytes to the output as they are. False where that fails, but for a reader that has gone:
/// it has all that it wants.
bool WriteOutput(std::string_view bytes);

/// Makes a file that isn't there yet, whole or not at all. Gives why it couldn't, in a few words of
/// UTF-8; empty for done.
std::string WriteNewFile(const std::string& path, std::string_view bytes);

/// A Windows world that was found; texts in UTF-8.
struct FoundWorld {
  std::string name;
  std::string manager;  ///< the program that manages it
  std::string path;
  bool running = false;  ///< Windows programs run in it
};
/// The worlds of this user beside the one and only; empty on Windows.
std::vector<FoundWorld> FoundWorlds();

/// What came of opening a world.
struct OpenedWorld {
  std::string error;                  ///< why it couldn't be opened; empty for done
  std::vector<std::string> warnings;  ///< what can only be read, and why
};
/// Opens the world that a folder holds or that is found under a name, an empty text for the usual
/// one.
OpenedWorld OpenWorld(const std::string& named);

/// Whether programs run in the open world that would write over changes of its registry.
bool IsWorldInUse();
/// Why the last change was refused before it was made, and what the user can do, in UTF-8; empty
/// where the error itself says so. Asking clears it.
std::string WhyRefused();

/// What became of changes that wait to be written.
struct CommitFailure {
  std::string reason;      ///< the file and why, one line
  bool isRefused = false;  ///< because programs run in the world
};
/// Writes the changes that were made since the last call. What fails is dropped: the store is then
/// as it was.
std::vector<CommitFailure> CommitChanges();

/// Held by one program without a window at a time in a world, so that what one has read another
/// doesn't change before it is written.
class Turn {
 public:
  virtual ~Turn() = default;
};
/// Waits for the turn for a minute; null where it doesn't come.
std::unique_ptr<Turn> WaitForTurn();

}  // namespace torvane
