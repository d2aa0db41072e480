// Lists that a generator makes up, and the sentence that every command must hold on them: each
// entry that wasn't chosen reads afterwards as it did before, nothing chosen is left, and what is
// taken back is what was there.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "editing/delete_commands.h"
#include "readers/basListFill.h"
#include "readers/list_description.h"

namespace torvane::testing {

/// Where the generator's decisions come from.
class Choices {
 public:
  virtual ~Choices() = default;
  /// A number from 0 to `limit` - 1.
  virtual std::uint32_t Below(std::uint32_t limit) = 0;

  bool OneIn(std::uint32_t times) { return Below(times) == 0; }
  template <class Table>
  const auto& OneOf(const Table& table) {
    return std::data(table)[Below(static_cast<std::uint32_t>(std::size(table)))];
  }
};

class SeededChoices : public Choices {
 public:
  explicit SeededChoices(std::uint32_t seed) : engine_(seed) {}
  std::uint32_t Below(std::uint32_t limit) override {
    return static_cast<std::uint32_t>(engine_() % limit);
  }

 private:
  std::mt19937 engine_;
};

/// The world that generated lists stand in.
struct GeneratedWorld {
  DeleteContext context;
  /// Windows paths of files and folders that exist.
  std::vector<Text> realPaths;
  /// Writes the INI file of the rows below, behind the program's back, and gives its bytes now. The
  /// rows that ask for a folder find the Windows folder under their name.
  std::function<void(const std::string&)> putIni;
  std::function<std::string()> iniBytes;
  /// Whether those bytes are to be what they were when a deletion has been taken back.
  bool givesBackBytes = false;
  /// Lets the platform write what it holds back.
  std::function<void()> writeBack;
};

/// Generates a list, runs a command on it and takes it back. Gives what went wrong, empty for
/// nothing.
std::string RunGeneratedList(Choices& choices, GeneratedWorld& world);

}  // namespace torvane::testing
