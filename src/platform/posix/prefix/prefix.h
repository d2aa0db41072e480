// The Wine prefix that the layer works on: where it lies.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/posix/prefix/found_prefixes.h"

namespace torvane::posix {

/// The prefix that the environment names can't be used; what() says which path and why.
class PrefixError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The prefix's folder: the one that ChoosePrefix() has named, else $WINEPREFIX, else the only one
/// that is found, and where there is none a minimal one that is made on first use at
/// $XDG_DATA_HOME/torvane/prefix. Found once, links in its path followed then and not again, and
/// kept until ForgetWorld(): a link that is turned to another prefix meanwhile changes nothing.
/// Throws PrefixError where $WINEPREFIX doesn't exist or has no drive_c, or where there are several
/// and none has been chosen.
const std::filesystem::path& PrefixRoot();

/// The prefixes that the user has to choose among; empty where there is nothing to choose.
std::vector<FoundPrefix> PrefixesToChooseFrom();
/// Names the prefix for this run of the program, from the next ForgetWorld() on if one is open.
void ChoosePrefix(const FoundPrefix& prefix);
/// The prefix that a folder is or holds, under the name by which it is found. Throws PrefixError,
/// which says what was looked for, where it is none.
FoundPrefix PrefixNamed(const std::filesystem::path& folder);
/// What tells the chosen prefix from others, in one line ("Bottles: Office"); empty where none had
/// to be chosen.
std::string ChosenTitle();

/// The prefix that was chosen last, in whatever run; empty for none. Kept below $XDG_STATE_HOME.
std::filesystem::path LastChoice();
/// Keeps a choice for LastChoice(). Where that can't be written the next start asks without it.
void KeepChoice(const std::filesystem::path& root);

}  // namespace torvane::posix
