#include "cli/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

#include "cli/exit_status.h"
#include "cli/utf8.h"
#include "platform/extras.h"

namespace torvane {
namespace {

constexpr const char* kFooter =
    "Examples, on the sample prefix (scripts/run makes a copy in build/sample-prefix):\n"
    "  torvane-cli --prefix build/sample-prefix lists\n"
    "  torvane-cli --prefix build/sample-prefix show \"Text Editors/ConTEXT (File History)\"\n"
    "  torvane-cli --prefix build/sample-prefix delete \"Text Editors/ConTEXT (File History)\" \\\n"
    "    --match \"*.c\" --dry-run\n"
    "  torvane-cli --prefix build/sample-prefix clean --missing --keep \"c:\\data\\web\\*\" "
    "--dry-run\n"
    "  torvane-cli --prefix build/sample-prefix export \"Text Editors/ConTEXT (File History)\" \\\n"
    "    --output lists.reg\n"
    "Exit status: 0 done, 1 failed, 2 called wrongly, 3 refused because Windows programs run on "
    "the\n"
    "prefix, 4 no such list or entry.";

// The words as they are given, until they are turned into texts.
struct Words {
  std::vector<std::string> lists;
  std::vector<std::string> entries;
  std::vector<std::string> patterns;
  std::vector<std::string> keep;
  std::vector<std::string> categories;
  std::string iniFolder;
  bool isMissing = false;
  bool isAll = false;
};

std::vector<Text> Texts(const std::vector<std::string>& words) {
  std::vector<Text> texts;
  texts.reserve(words.size());
  for (const std::string& word : words) texts.push_back(FromUtf8(word));
  return texts;
}

// The library would take a word in square brackets for several.
CLI::Option& AddWord(CLI::App& command, const char* name, std::vector<std::string>& words,
                     const char* description) {
  return *command.add_option(name, words, description)->allow_extra_args(false);
}

// The same with as many words as follow.
CLI::Option& AddWords(CLI::App& command, const char* name, std::vector<std::string>& words,
                      const char* description) {
  constexpr int kMany = 1 << 20;
  return *AddWord(command, name, words, description).expected(1, kMany);
}

// An option whose word says where. An empty one is a variable that isn't set, and what would be
// done without the option isn't what is meant.
CLI::Option& AddPlace(CLI::App& command, const char* name, std::string& word,
                      const char* description) {
  return *command.add_option(name, word, description)->check([](const std::string& given) {
    return given.empty() ? std::string("it is empty") : std::string();
  });
}

void AddListName(CLI::App& command, Words& words) {
  AddWord(command, "LIST", words.lists, "the list, as \"lists\" names it").required()->expected(1);
}

void AddFolder(CLI::App& command, Words& words) {
  AddPlace(command, "--ini-folder", words.iniFolder,
           "the Windows folder of the list's INI file, where it isn't known yet; it is remembered")
      .type_name("FOLDER");
}

void AddWish(CLI::App& command, Words& words, Wish& wish) {
  AddWord(command, "--keep", words.keep, "keep entries like this; can be given often")
      .type_name("PATTERN");
  command.add_flag("--unreachable", wish.takesUnreachable,
                   "take entries on drives or servers that can't be reached for missing");
  command.add_flag("--dry-run", wish.isDryRun, "say what would go, and touch nothing");
  AddPlace(command, "--backup", wish.backup,
           "write what is stored to this new .reg file first; what lies in INI files goes to "
           "FILE.ini")
      .type_name("FILE");
}

void AddDelete(CLI::App& app, Words& words, Arguments& arguments) {
  CLI::App& command = *app.add_subcommand("delete", "delete entries of a list");
  AddListName(command, words);
  CLI::Option_group& which = *command.add_option_group("which", "which entries; one of these");
  which.add_flag("--missing", words.isMissing, "those whose file or folder is gone");
  which.add_flag("--all", words.isAll, "all");
  AddWords(which, "--entry", words.entries, "these, as \"show\" prints them in one piece")
      .type_name("TEXT");
  AddWords(which, "--match", words.patterns, "those like these; * and ? stand for characters")
      .type_name("PATTERN");
  which.require_option(1);
  AddWish(command, words, arguments.wish);
  AddFolder(command, words);
  command.callback([&arguments] { arguments.command = Command::Delete; });
}

void AddClean(CLI::App& app, Words& words, Arguments& arguments) {
  CLI::App& command = *app.add_subcommand("clean", "delete the missing entries of all lists");
  command.add_flag("--missing", words.isMissing, "those whose file or folder is gone")->required();
  AddWords(command, "--category", words.categories, "only in lists of these categories")
      .type_name("NAME");
  AddWish(command, words, arguments.wish);
  command.callback([&arguments] { arguments.command = Command::Clean; });
}

void AddReading(CLI::App& app, Words& words, Arguments& arguments) {
  CLI::App& lists = *app.add_subcommand("lists", "the lists that have entries");
  lists.add_flag("--all", arguments.showsEmpty, "and those that have none");
  lists.callback([&arguments] { arguments.command = Command::Lists; });
  CLI::App& show = *app.add_subcommand("show", "the entries of a list");
  AddListName(show, words);
  AddFolder(show, words);
  show.callback([&arguments] { arguments.command = Command::Show; });
  CLI::App& exported = *app.add_subcommand("export", "the keys of lists as a .reg file");
  exported.add_option("LIST", words.lists, "the lists, as \"lists\" names them")->required();
  AddPlace(exported, "-o,--output", arguments.output, "a new file, else it goes to standard output")
      .type_name("FILE");
  exported.callback([&arguments] { arguments.command = Command::Export; });
  app.add_subcommand("prefixes", "the Wine prefixes that are found")->callback([&arguments] {
    arguments.command = Command::Prefixes;
  });
}

std::string VersionLine() {
  const VersionRecord version = ReadVersionRecord();
  return ToUtf8(version.productName) + " " + std::to_string(version.major) + "." +
         std::to_string(version.minor) + "." + std::to_string(version.revision);
}

void Settle(const Words& words, Arguments& arguments) {
  arguments.lists = Texts(words.lists);
  arguments.categories = Texts(words.categories);
  arguments.iniFolder = FromUtf8(words.iniFolder);
  Wish& wish = arguments.wish;
  wish.entries = Texts(words.entries);
  wish.patterns = Texts(words.patterns);
  wish.keep = Texts(words.keep);
  if (words.isAll) wish.what = Wish::What::All;
  if (!words.entries.empty() || !words.patterns.empty()) wish.what = Wish::What::Chosen;
}

}  // namespace

ReadArguments ReadCommandLine(const std::vector<std::string>& words) {
  ReadArguments read;
  Arguments& arguments = read.arguments;
  Words raw;
  bool isJson = false;
  CLI::App app("Shows and cleans the lists of recent files that Windows programs keep.",
               "torvane-cli");
  app.fallthrough();
  app.require_subcommand(1);
  app.footer(kFooter);
  app.set_version_flag("--version", VersionLine());
  app.add_flag("--json", isJson, "print JSON; docs/torvane-cli.schema.json describes it");
  AddPlace(app, "--prefix", arguments.prefix, "the Wine prefix: its folder, or a found name")
      .type_name("FOLDER|NAME");
  AddReading(app, raw, arguments);
  AddDelete(app, raw, arguments);
  AddClean(app, raw, arguments);
  try {
    std::vector<std::string> backwards(words.rbegin(), words.rend());
    app.parse(backwards);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      std::ostringstream answer;
      app.exit(error, answer);
      read.status = Printed(PrintBytes(answer.str()));
    } else {
      PrintError(std::string(error.what()) + " (--help says how it is called)");
      read.status = status::kCalledWrongly;
    }
    return read;
  }
  if (isJson) arguments.format = Format::Json;
  Settle(raw, arguments);
  return read;
}

}  // namespace torvane
