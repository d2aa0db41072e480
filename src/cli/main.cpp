// torvane-cli: the lists without a window.
#include <algorithm>
#include <exception>

#include "cli/arguments.h"
#include "cli/exit_status.h"
#include "cli/headless_toolkit.h"
#include "cli/reg_file.h"
#include "cli/utf8.h"
#include "platform/console.h"
#include "platform/extras.h"
#include "storage/file_lookups.h"
#include "storage/raised_error.h"

namespace torvane {
namespace {

const NamedList* FindList(const std::vector<NamedList>& lists, const Text& name) {
  const auto found =
      std::ranges::find_if(lists, [&](const NamedList& list) { return SameName(list.name, name); });
  if (found != lists.end()) return &*found;
  PrintError("There is no list \"" + ToUtf8(name) + "\"; \"lists --all\" prints their names.");
  return nullptr;
}

// The list filled; null, the reason being said, where the folder of its INI file isn't known.
std::unique_ptr<OpenList> Open(const NamedList& named, const Arguments& arguments) {
  auto list = std::make_unique<OpenList>(named, arguments.iniFolder);
  if (list->Shown()) return list;
  PrintError("The folder of " + ToUtf8(list->Place().location) +
             " isn't known, or the file isn't "
             "there; give its Windows folder by --ini-folder.");
  return nullptr;
}

int Lists(const std::vector<NamedList>& lists, const Arguments& arguments) {
  std::vector<ListRow> rows;
  {
    const FileLookups lookups;
    Progress progress(lists.size());
    for (const NamedList& named : lists) {
      progress.Step(named.name);
      const OpenList list(named, {});
      if (list.Entries().empty() && !arguments.showsEmpty) continue;
      rows.push_back({named.name, std::ssize(list.Entries()), list.MissingCount()});
    }
  }
  return Printed(PrintLists(rows, arguments.format));
}

// A folder that was asked for is kept, as the window keeps it.
int KeepAnswer(const Arguments& arguments) {
  if (arguments.iniFolder.empty()) return status::kDone;
  const auto failures = CommitChanges();
  for (const CommitFailure& failure : failures) PrintError(failure.reason);
  return failures.empty() ? status::kDone : status::kFailed;
}

int Show(const std::vector<NamedList>& lists, const Arguments& arguments) {
  const NamedList* named = FindList(lists, arguments.lists.front());
  if (!named) return status::kNoSuch;
  const auto list = Open(*named, arguments);
  if (!list) return status::kFailed;
  const int printed = Printed(PrintEntries(*list, arguments.format));
  return std::max(printed, KeepAnswer(arguments));
}

int Export(const std::vector<NamedList>& lists, const Arguments& arguments) {
  if (arguments.output.empty() &&
      (IsTerminal(Stream::Output) || arguments.format == Format::Json)) {
    PrintError("Where to? Name a new file by --output.");
    return status::kCalledWrongly;
  }
  RegFile file;
  for (const Text& name : arguments.lists) {
    const NamedList* named = FindList(lists, name);
    if (!named) return status::kNoSuch;
    const OpenList list(*named, {});
    if (list.Place().kind != ListPlace::Kind::Key) {
      PrintError(ToUtf8(name) + " lies in the INI file " + ToUtf8(list.Place().location) +
                 ", which a .reg file can't hold; copy that file.");
      return status::kFailed;
    }
    if (list.Shown()->picture->exists) file.Add(list.Place(), *list.Shown()->picture);
  }
  if (arguments.output.empty()) return Printed(PrintBytes(file.Bytes()));
  const std::string reason = WriteNewFile(arguments.output, file.Bytes());
  if (reason.empty()) {
    return Printed(PrintExported(arguments.lists, arguments.output, arguments.format));
  }
  PrintError(arguments.output + " can't be written: " + reason + "; name another file.");
  return status::kFailed;
}

int Told(const DeletionReport& report, const Arguments& arguments) {
  for (const std::string& error : report.errors) PrintError(error);
  return std::max(report.status, Printed(PrintDeletion(report, arguments.wish, arguments.format)));
}

std::unique_ptr<Turn> TakeTurn() {
  auto turn = WaitForTurn();
  if (!turn) PrintError("Another torvane-cli has been at work for a minute; call again later.");
  return turn;
}

int Delete(const std::vector<NamedList>& lists, const Arguments& arguments) {
  const NamedList* named = FindList(lists, arguments.lists.front());
  if (!named) return status::kNoSuch;
  std::vector<std::unique_ptr<OpenList>> open;
  open.push_back(Open(*named, arguments));
  if (!open.front()) return status::kFailed;
  return Told(DeleteFrom(std::move(open), arguments.wish), arguments);
}

bool HasCategories(const std::vector<NamedList>& lists, const Arguments& arguments) {
  return std::ranges::all_of(arguments.categories, [&](const Text& category) {
    const bool isThere = std::ranges::any_of(
        lists, [&](const NamedList& list) { return SameName(list.known.category, category); });
    if (!isThere)
      PrintError("There is no category \"" + ToUtf8(category) +
                 "\"; it is what stands ahead of a list's name.");
    return isThere;
  });
}

int Clean(const std::vector<NamedList>& lists, const Arguments& arguments) {
  if (!HasCategories(lists, arguments)) return status::kNoSuch;
  std::vector<std::unique_ptr<OpenList>> open;
  {
    const FileLookups lookups;
    Progress progress(lists.size());
    for (const NamedList& named : lists) {
      progress.Step(named.name);
      const auto isOfList = [&](const Text& category) {
        return SameName(named.known.category, category);
      };
      if (!arguments.categories.empty() && std::ranges::none_of(arguments.categories, isOfList))
        continue;
      auto list = std::make_unique<OpenList>(named, TextView());
      if (list->Shown()) open.push_back(std::move(list));
    }
  }
  return Told(DeleteFrom(std::move(open), arguments.wish), arguments);
}

int Do(const Arguments& arguments) {
  if (arguments.command == Command::Prefixes) return Printed(PrintWorlds(arguments.format));
  const OpenedWorld world = OpenWorld(arguments.prefix);
  if (!world.error.empty()) {
    PrintError(world.error);
    return status::kCalledWrongly;
  }
  for (const std::string& warning : world.warnings) PrintError(warning);
  const HeadlessToolkit toolkit(arguments.iniFolder);
  const bool changes = arguments.command == Command::Delete || arguments.command == Command::Clean;
  // Taken before anything is read, so that what is read still holds when it is written.
  std::unique_ptr<Turn> turn;
  if (changes && !arguments.wish.isDryRun && !(turn = TakeTurn())) return status::kFailed;
  const OwnLists own = ReadOwnLists();
  if (const Text message = LeftOutMessage(own); !message.empty()) PrintError(ToUtf8(message));
  const std::vector<NamedList> lists = NamedLists(own);
  switch (arguments.command) {
    case Command::Lists:
      return Lists(lists, arguments);
    case Command::Show:
      return Show(lists, arguments);
    case Command::Export:
      return Export(lists, arguments);
    case Command::Delete:
      return Delete(lists, arguments);
    default:
      return Clean(lists, arguments);
  }
}

}  // namespace
}  // namespace torvane

int main(int argc, char** argv) {
  using namespace torvane;
  GuardProcess();
  PrepareConsole();
  try {
    const ReadArguments read = ReadCommandLine(ConsoleArguments(argc, argv));
    return read.status ? *read.status : Do(read.arguments);
  } catch (const RaisedError& error) {
    PrintError(ToUtf8(error.Description()));
  } catch (const std::exception& error) {
    PrintError(error.what());
  }
  return status::kFailed;
}
