// What the program needs of its platform beyond the documented calls: the resources that travel in
// the executable, the answer to its arguments, what keeps the system from meddling, long paths, and
// one export of the shell that has no name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

/// To be called first: from then on the system shows no boxes of its own over a drive without a
/// disk, and takes DLLs from its own folder only.
void GuardProcess();

/// Answers the arguments behind the program's name. Gives the exit status where that is all there
/// is to do, nothing where the window is to be opened; never needs a display.
std::optional<int> AnswerArguments(std::span<const char* const> arguments);

/// What tells the Windows world that the program works on from the user's others, for a window's
/// title; empty where there is only one.
std::u16string WorldTitle();

/// A path in the form in which FindFirstFile takes it whatever its length.
std::u16string PathForSearch(const std::u16string& path);

/// Asks the shell to complete its image list (shell32, ordinal 660). Does nothing where the export
/// doesn't exist.
void CompleteShellImageList();

/// The number in the shell's image list of the picture that an .ico file is; `shown`, which the
/// shell gave for the path, for any other file and where there is none.
int ImageOfIconFile(const std::u16string& path, int shown);

/// A file that the user wrote for the program.
struct UserFile {
  std::u16string path;               ///< as the user knows it
  std::optional<std::string> bytes;  ///< nothing where it can't be read, or is too large
  bool isTooLarge = false;           ///< more than kMostUserBytes
};

/// Nobody writes so much by hand.
inline constexpr std::uint64_t kMostUserBytes = std::uint64_t{1} << 20;

/// The user's files of that name, as far as there are any, each once: in the folder for the
/// program's settings and, on Windows, beside the program.
std::vector<UserFile> ReadUserFiles(std::u16string_view name);

/// Why a change would do harm to a profile file, which the system's calls make without a word.
enum class ProfileHarm {
  None,
  UnknownMark,  ///< they don't know the mark at its front: what they write, nobody reads
  OutsidePage,  ///< they keep it in the ANSI code page, which hasn't a character of the text
};

/// What would come of writing `text`, a section's or key's name or a value, to the profile file of
/// a path, as it stands now. To be asked before the first change; an empty text asks about the file
/// alone. An absent file is one in the code page. None where the file can't be read: the write will
/// fail by itself.
ProfileHarm HarmToProfile(const std::u16string& path, std::u16string_view text);

/// Whether a change of a section would write lines anew whose bytes their text doesn't lead back
/// to: half a character of a page with two bytes for one, ill-formed UTF-8. False where the file
/// can't be read.
bool HasBrokenText(const std::u16string& path, const std::u16string& section);

/// Why the profile file of a path can't be read, which the calls give as one without sections; in
/// words that follow its name ("has 5.0 TB, ..."). Empty where it can be read or isn't there.
std::u16string ProfileProblem(const std::u16string& path);

}  // namespace torvane
