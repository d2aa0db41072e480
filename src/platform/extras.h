// What the program needs of its platform beyond the documented calls: the resources that travel in
// the executable, the answer to its arguments, and one export of the shell that has no name.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace torvane {

/// The product's version record, as stored in the executable.
struct VersionRecord {
  std::u16string productName;
  std::u16string description;
  std::u16string legalNotice;
  int major = 0;
  int minor = 0;
  int revision = 0;
};

/// The bytes of resource `id` of type "DATA", valid to the program's end.
/// Throws std::runtime_error where there is no such resource.
std::span<const std::byte> DataResource(int id);

/// Text `id` of the string table (1 to 8); empty for an id that isn't there.
std::u16string StringResource(int id);

/// The version record of the running executable.
VersionRecord ReadVersionRecord();

/// The file name of the running executable without folder and extension ("torvane").
std::u16string ExecutableBaseName();

/// Answers the arguments behind the program's name. Gives the exit status where that is all there
/// is to do, nothing where the window is to be opened; never needs a display.
std::optional<int> AnswerArguments(std::span<const char* const> arguments);

/// Asks the shell to complete its image list (shell32, ordinal 660). Does nothing where the export
/// doesn't exist.
void CompleteShellImageList();

/// The number in the shell's image list of the picture that an .ico file is; `shown`, which the
/// shell gave for the path, for any other file and where there is none.
int ImageOfIconFile(const std::u16string& path, int shown);

}  // namespace torvane
