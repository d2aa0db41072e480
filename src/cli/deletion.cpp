#include "cli/deletion.h"

#include <algorithm>

#include "cli/exit_status.h"
#include "cli/reg_file.h"
#include "cli/utf8.h"
#include "editing/rewrite.h"
#include "platform/console.h"

namespace torvane {
namespace {

enum class Fate { Stays, Goes, Kept };

bool MatchesAny(TextView text, const std::vector<Text>& patterns) {
  return std::ranges::any_of(patterns, [&](const Text& pattern) { return Matches(text, pattern); });
}

bool IsWanted(const Entry& entry, const Wish& wish) {
  switch (wish.what) {
    case Wish::What::Missing:
      return entry.isMissing || (entry.isUnreachable && !entry.isPinned);
    case Wish::What::All:
      return true;
    default:
      return MatchesAny(entry.text, wish.patterns) ||
             std::ranges::any_of(wish.entries,
                                 [&](const Text& text) { return SameName(text, entry.text); });
  }
}

Fate FateOf(const Entry& entry, const Wish& wish) {
  if (!IsWanted(entry, wish)) return Fate::Stays;
  const bool isOutOfReach = wish.what == Wish::What::Missing && entry.isUnreachable;
  if (isOutOfReach && !wish.takesUnreachable) return Fate::Kept;
  return MatchesAny(entry.text, wish.keep) ? Fate::Kept : Fate::Goes;
}

// A list with what is to become of its entries.
struct Task {
  std::unique_ptr<OpenList> list;
  std::vector<Fate> fates;
  std::optional<Deletion> done;

  bool Changes() const { return std::ranges::count(fates, Fate::Goes) != 0; }
};

void Decide(Task& task, const Wish& wish) {
  task.fates.clear();
  for (const Entry& entry : task.list->Entries()) task.fates.push_back(FateOf(entry, wish));
}

void Select(Task& task) {
  for (std::size_t at = 0; at < task.fates.size(); ++at) {
    task.list->Rows().ListItems()(static_cast<int>(at) + 1).Selected(task.fates[at] == Fate::Goes);
  }
}

// Gives why the list stays as it was; empty for a change.
std::string Change(Task& task, const Wish& wish) {
  // What another program writes meanwhile is looked at anew, unless a backup of before is made.
  for (int attempts = wish.backup.empty() ? 3 : 1;; --attempts) {
    try {
      Select(task);
      // Only who wants all wants what the list doesn't show.
      const bool isAll = wish.what == Wish::What::All &&
                         std::ranges::count(task.fates, Fate::Goes) == std::ssize(task.fates);
      if (task.Changes()) {
        task.done = DeleteEntries(task.list->Rows(), isAll ? Doomed::All : Doomed::Selected);
      }
      return {};
    } catch (const ListHasChanged& changed) {
      if (attempts <= 1) return ToUtf8(changed.Description()) + " Call again.";
      task.list->ReadAnew();
      Decide(task, wish);
    } catch (const RaisedError& error) {
      const std::string why = WhyRefused();
      return why.empty() ? ToUtf8(error.Description()) : why;
    }
  }
}

std::string WriteBackup(const std::vector<Task>& tasks, const std::string& path) {
  RegFile keys;
  SectionFile sections;
  for (const Task& task : tasks) {
    const ListPlace& place = task.list->Place();
    const ShownList& shown = *task.list->Shown();
    if (place.kind == ListPlace::Kind::Key) {
      keys.Add(place, *shown.picture);
    } else {
      sections.Add(shown.store->Identity(), place, *shown.picture);
    }
  }
  if (!sections.IsEmpty()) {
    const std::string beside = path + ".ini";
    const std::string reason = WriteNewFile(beside, sections.Bytes());
    if (!reason.empty()) return beside + ": " + reason;
  }
  const std::string reason = WriteNewFile(path, keys.Bytes());
  return reason.empty() ? std::string() : path + ": " + reason;
}

void Report(const Task& task, DeletionReport& report) {
  for (std::size_t at = 0; at < task.fates.size(); ++at) {
    const ListedEntry entry{task.list->Name(), task.list->Entries()[at].text};
    if (task.fates[at] == Fate::Goes) report.deleted.push_back(entry);
    if (task.fates[at] == Fate::Kept) report.kept.push_back(entry);
  }
}

// Whether the entries named are all there; says which aren't.
bool HasAllEntries(const std::vector<Task>& tasks, const Wish& wish, DeletionReport& report) {
  for (const Text& text : wish.entries) {
    const bool isThere = std::ranges::any_of(tasks, [&](const Task& task) {
      return std::ranges::any_of(task.list->Entries(),
                                 [&](const Entry& entry) { return SameName(entry.text, text); });
    });
    if (isThere) continue;
    report.status = status::kNoSuch;
    report.errors.push_back("There is no entry \"" + ToUtf8(text) +
                            "\"; \"show\" prints them. Nothing has been changed.");
  }
  return report.status == status::kDone;
}

bool IsRefused(const std::vector<Task>& tasks) {
  const bool touchesRegistry = std::ranges::any_of(
      tasks, [](const Task& task) { return task.list->Place().kind == ListPlace::Kind::Key; });
  return touchesRegistry && IsWorldInUse();
}

constexpr const char* kInUse =
    "Windows programs are running on this prefix. Nothing has been changed; close them, wait a "
    "few seconds, and call again.";

void Fail(DeletionReport& report, int status, std::string error) {
  report.status = std::max(report.status, status);
  report.errors.push_back(std::move(error));
}

// Writes what was changed, and tells which lists it didn't reach.
void Commit(std::vector<Task>& tasks, DeletionReport& report) {
  const auto failures = CommitChanges();
  for (const CommitFailure& failure : failures) {
    Fail(report, failure.isRefused ? status::kRefused : status::kFailed, failure.reason);
  }
  for (const Task& task : tasks) {
    if (!task.done) continue;
    if (!failures.empty() && !SameContent(task.list->Shown()->store->Read(), *task.done->after)) {
      Fail(report, status::kFailed, ToUtf8(task.list->Name()) + ": unchanged.");
      continue;
    }
    Report(task, report);
  }
}

void ChangeAll(std::vector<Task>& tasks, const Wish& wish, DeletionReport& report) {
  if (IsRefused(tasks)) return Fail(report, status::kRefused, kInUse);
  if (!wish.backup.empty()) {
    const std::string error = WriteBackup(tasks, wish.backup);
    if (!error.empty()) {
      return Fail(
          report, status::kFailed,
          "The backup can't be made, " + error + ". Nothing has been changed; name another file.");
    }
  }
  for (Task& task : tasks) {
    const std::string error = Change(task, wish);
    if (error.empty()) continue;
    Fail(report, IsWorldInUse() ? status::kRefused : status::kFailed,
         ToUtf8(task.list->Name()) + ": unchanged. " + error);
  }
  Commit(tasks, report);
}

}  // namespace

bool Matches(TextView text, TextView pattern) {
  const Text shown = LowerCase(Text(text));
  const Text wanted = LowerCase(Text(pattern));
  std::size_t at = 0;
  std::size_t in = 0;
  // Where the last star stood, and what it has swallowed up to.
  std::size_t star = Text::npos;
  std::size_t swallowed = 0;
  while (at < shown.size()) {
    if (in < wanted.size() && wanted[in] == u'*') {
      star = in++;
      swallowed = at;
    } else if (in < wanted.size() && (wanted[in] == u'?' || wanted[in] == shown[at])) {
      ++in;
      ++at;
    } else if (star != Text::npos) {
      in = star + 1;
      at = ++swallowed;
    } else {
      return false;
    }
  }
  return wanted.find_first_not_of(u'*', in) == Text::npos;
}

DeletionReport DeleteFrom(std::vector<std::unique_ptr<OpenList>> lists, const Wish& wish) {
  DeletionReport report;
  std::vector<Task> tasks;
  for (auto& list : lists) {
    Task task{std::move(list), {}, std::nullopt};
    Decide(task, wish);
    tasks.push_back(std::move(task));
  }
  if (!HasAllEntries(tasks, wish, report)) return report;
  // What only keeps entries is told, and left alone.
  std::vector<Task> changing;
  for (Task& task : tasks) {
    if (task.Changes() && !wish.isDryRun) {
      changing.push_back(std::move(task));
    } else {
      Report(task, report);
    }
  }
  if (!changing.empty()) ChangeAll(changing, wish, report);
  return report;
}

}  // namespace torvane
