#include "cli/output.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "cli/exit_status.h"
#include "cli/utf8.h"
#include "platform/console.h"

namespace torvane {
namespace {

using Json = nlohmann::ordered_json;

// A text as a line of a terminal can show it: nothing in it is an order to the terminal, neither a
// control character of ASCII nor one of those behind, U+0080 to U+009F.
std::string Printable(std::string text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const auto next = static_cast<unsigned char>(at + 1 < text.size() ? text[at + 1] : 0);
    const bool isLate = byte == 0xC2 && next >= 0x80 && next < 0xA0;
    if (isLate) text.erase(at + 1, 1);
    if (isLate || byte < ' ' || byte == 0x7F) text[at] = '?';
  }
  return text;
}

std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](unsigned char byte) { return (byte & 0xC0U) != 0x80U; }));
}

enum class Colour { None, Red = 31, Yellow = 33 };

struct TableLine {
  std::vector<std::string> cells;
  Colour colour = Colour::None;
};

bool ShowsColours() {
  const char* const wish = std::getenv("NO_COLOR");
  return IsTerminal(Stream::Output) && (!wish || *wish == '\0');
}

bool PrintTable(const std::vector<TableLine>& lines) {
  std::vector<std::size_t> widths;
  for (const TableLine& line : lines) {
    widths.resize(std::max(widths.size(), line.cells.size()));
    for (std::size_t at = 0; at < line.cells.size(); ++at) {
      widths[at] = std::max(widths[at], WidthOf(line.cells[at]));
    }
  }
  const bool colours = ShowsColours();
  std::string text;
  for (const TableLine& line : lines) {
    std::string row;
    for (std::size_t at = 0; at < line.cells.size(); ++at) {
      row += line.cells[at];
      row.append(widths[at] - WidthOf(line.cells[at]) + 2, ' ');
    }
    row.resize(row.find_last_not_of(' ') + 1);
    if (colours && line.colour != Colour::None) {
      row = "\x1b[" + std::to_string(static_cast<int>(line.colour)) + "m" + row + "\x1b[0m";
    }
    text += row + "\n";
  }
  return PrintBytes(text);
}

bool PrintJson(const Json& json) {
  return PrintBytes(json.dump(2) + "\n");
}

std::string Cell(TextView text) {
  return Printable(ToUtf8(text));
}

std::string NoteOn(const Entry& entry) {
  std::string note = entry.isMissing ? "missing" : "";
  if (entry.isUnreachable) note = "can't be reached";
  if (entry.isPinned) note += note.empty() ? "pinned" : ", pinned";
  return note;
}

Json JsonOf(const std::vector<ListedEntry>& entries) {
  Json json = Json::array();
  for (const ListedEntry& entry : entries) {
    json.push_back({{"list", ToUtf8(entry.list)}, {"text", ToUtf8(entry.text)}});
  }
  return json;
}

Json JsonOf(const Entry& entry) {
  Json columns = Json::array();
  for (const Text& column : entry.columns) columns.push_back(ToUtf8(column));
  return {{"text", ToUtf8(entry.text)},
          {"columns", columns},
          {"missing", entry.isMissing},
          {"unreachable", entry.isUnreachable},
          {"pinned", entry.isPinned}};
}

void AddLines(const char* word, const std::vector<ListedEntry>& entries,
              std::vector<TableLine>& lines) {
  for (const ListedEntry& entry : entries) {
    lines.push_back({{word, Cell(entry.list), Cell(entry.text)}});
  }
}

}  // namespace

bool PrintLists(const std::vector<ListRow>& rows, Format format) {
  if (format == Format::Json) {
    Json json = Json::array();
    for (const ListRow& row : rows) {
      json.push_back(
          {{"name", ToUtf8(row.name)}, {"entries", row.entries}, {"missing", row.missing}});
    }
    return PrintJson(json);
  }
  std::vector<TableLine> lines{{{"LIST", "ENTRIES", "MISSING"}}};
  for (const ListRow& row : rows) {
    lines.push_back({{Cell(row.name), std::to_string(row.entries), std::to_string(row.missing)},
                     row.missing != 0 ? Colour::Red : Colour::None});
  }
  return PrintTable(lines);
}

bool PrintEntries(const OpenList& list, Format format) {
  if (format == Format::Json) {
    Json entries = Json::array();
    for (const Entry& entry : list.Entries()) entries.push_back(JsonOf(entry));
    return PrintJson({{"name", ToUtf8(list.Name())}, {"entries", entries}});
  }
  std::vector<TableLine> lines;
  for (const Entry& entry : list.Entries()) {
    TableLine line{{NoteOn(entry)}, entry.isMissing ? Colour::Red : Colour::None};
    if (entry.isUnreachable) line.colour = Colour::Yellow;
    for (const Text& column : entry.columns) line.cells.push_back(Cell(column));
    lines.push_back(std::move(line));
  }
  return PrintTable(lines);
}

bool PrintDeletion(const DeletionReport& report, const Wish& wish, Format format) {
  if (format == Format::Json) {
    return PrintJson({{"deleted", JsonOf(report.deleted)}, {"kept", JsonOf(report.kept)}});
  }
  std::vector<TableLine> lines;
  AddLines(wish.isDryRun ? "would delete" : "deleted", report.deleted, lines);
  AddLines("kept", report.kept, lines);
  return PrintTable(lines);
}

bool PrintWorlds(Format format) {
  Json json = Json::array();
  std::vector<TableLine> lines{{{"NAME", "MANAGER", "RUNNING", "PATH"}}};
  for (const FoundWorld& world : FoundWorlds()) {
    json.push_back({{"name", world.name},
                    {"manager", world.manager},
                    {"path", world.path},
                    {"running", world.running}});
    lines.push_back({{Printable(world.name), Printable(world.manager), world.running ? "yes" : "no",
                      Printable(world.path)}});
  }
  if (format == Format::Table) return PrintTable(lines);
  return PrintBytes(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

bool PrintExported(const std::vector<Text>& names, const std::string& file, Format format) {
  if (format == Format::Table) return true;
  Json lists = Json::array();
  for (const Text& name : names) lists.push_back(ToUtf8(name));
  return PrintJson({{"file", file}, {"lists", lists}});
}

bool PrintBytes(const std::string& bytes) {
  return WriteOutput(bytes);
}

int Printed(bool reached) {
  if (reached) return status::kDone;
  PrintError("The output can't be written.");
  return status::kFailed;
}

void PrintError(const std::string& error) {
  std::string line;
  for (const char unit : error) {
    const bool isBreak = unit == '\n' || unit == '\r';
    if (!isBreak) line += unit;
    if (isBreak && !line.empty() && line.back() != ' ') line += ' ';
  }
  std::fprintf(stderr, "torvane-cli: %s\n", Printable(line).c_str());
}

Progress::~Progress() {
  if (isShown_) std::fputs("\r\x1b[K", stderr);
}

void Progress::Step(const Text& name) {
  ++step_;
  constexpr std::chrono::milliseconds kPatience{500};
  if (std::chrono::steady_clock::now() - begin_ < kPatience || !IsTerminal(Stream::Errors)) return;
  isShown_ = true;
  std::fprintf(stderr, "\r\x1b[K%zu of %zu: %s", step_, count_, Cell(name).c_str());
  std::fflush(stderr);
}

}  // namespace torvane
