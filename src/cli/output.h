// What the commands print: tables for people, JSON for programs, errors a line each.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "cli/deletion.h"

namespace torvane {

/// A row of `lists`.
struct ListRow {
  Text name;
  std::int64_t entries = 0;
  std::int64_t missing = 0;
};

enum class Format { Table, Json };

// Each prints what a command gives. False where it doesn't reach its reader.
bool PrintLists(const std::vector<ListRow>& rows, Format format);
bool PrintEntries(const OpenList& list, Format format);
bool PrintDeletion(const DeletionReport& report, const Wish& wish, Format format);
bool PrintWorlds(Format format);
bool PrintExported(const std::vector<Text>& names, const std::string& file, Format format);
/// Bytes as they are.
bool PrintBytes(const std::string& bytes);

/// A line on the error output.
void PrintError(const std::string& error);
/// The exit status for what was printed or not, which is said then.
int Printed(bool reached);

/// Tells on a terminal how far a longer work has come.
class Progress {
 public:
  explicit Progress(std::size_t count) : count_(count) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();
  void Step(const Text& name);

 private:
  std::size_t count_;
  std::size_t step_ = 0;
  bool isShown_ = false;
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace torvane
