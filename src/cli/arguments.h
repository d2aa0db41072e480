// What the program is called with.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/deletion.h"
#include "cli/output.h"

namespace torvane {

enum class Command { Lists, Show, Delete, Clean, Export, Prefixes };

struct Arguments {
  Command command = Command::Lists;
  Format format = Format::Table;
  std::string prefix;
  Text iniFolder;
  bool showsEmpty = false;       ///< lists --all
  std::vector<Text> lists;       ///< names
  std::vector<Text> categories;  ///< of clean; empty for all
  std::string output;            ///< of export; empty for the standard output
  Wish wish;
};

/// What came of reading them: arguments, or the status with which the program ends, all being said.
struct ReadArguments {
  Arguments arguments;
  std::optional<int> status;
};

/// Reads the arguments behind the program's name, in UTF-8.
ReadArguments ReadCommandLine(const std::vector<std::string>& words);

}  // namespace torvane
