// The Wine prefixes of this user: Wine's own, and those of the programs that make one for each of
// theirs, inside a sandbox or not.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvane::posix {

struct FoundPrefix {
  std::filesystem::path root;  ///< without links
  std::string name;            ///< as its owner shows it; fit for one line, UTF-8
  std::string manager;         ///< the program that manages it ("Bottles")
};

/// Every prefix that is found, each once, Wine's own first and then program by program.
std::vector<FoundPrefix> FindPrefixes();

/// The prefix that a folder is or, as Proton's do, holds in its folder "pfx", without links;
/// nothing where it is none.
std::optional<std::filesystem::path> PrefixIn(const std::filesystem::path& folder);

/// The folder that $HOME or the user's entry names; empty for none.
std::filesystem::path HomeFolder();
/// What a variable of the XDG base folders names ("XDG_DATA_HOME"), else this below the home
/// folder.
std::filesystem::path BaseFolder(const char* variable, std::string_view below);

}  // namespace torvane::posix
