// What a list is called: its key's names, without those that say nothing of the program.
#include <algorithm>
#include <array>
#include <functional>
#include <map>

#include "finding/found_list.h"
#include "finding/name_words.h"

namespace torvane {
namespace {

constexpr std::array<TextView, 26> kPlainNames = {
    u"Settings",   u"Options",    u"Preferences", u"Config",         u"Configuration", u"General",
    u"Files",      u"File",       u"Folders",     u"Paths",          u"Documents",     u"Projects",
    u"Main",       u"Common",     u"User",        u"Default",        u"Dialogs",       u"Windows",
    u"Applets",    u"Windows NT", u"Office",      u"CurrentVersion", u"Workspace",     u"State",
    u"MainWindow", u"Lists"};

using Names = std::vector<TextView>;

Names SplitKey(TextView key) {
  Names names;
  for (std::size_t begin = 0; begin <= key.size();) {
    const std::size_t end = std::min(key.find(u'\\', begin), key.size());
    names.push_back(key.substr(begin, end - begin));
    begin = end + 1;
  }
  return names;
}

// "16.0", "v2", "Version 3.1".
bool IsVersion(TextView name) {
  for (const TextView lead : {u"version", u"ver", u"v"}) {
    if (SameName(name.substr(0, lead.size()), lead)) {
      name.remove_prefix(lead.size());
      break;
    }
  }
  return !name.empty() && name.find_first_of(u"0123456789") != TextView::npos &&
         name.find_first_not_of(u"0123456789. _-") == TextView::npos;
}

bool SaysNothing(TextView name) {
  return IsVersion(name) || name.starts_with(u'{') || SaysRecent(name) ||
         std::any_of(kPlainNames.begin(), kPlainNames.end(),
                     [name](TextView plain) { return SameName(name, plain); });
}

// A program without a vendor's key stands in the vendor's place. What lies far below the program's
// key tells nobody anything.
Text ProgramName(TextView key) {
  constexpr int kMostNames = 4;
  const Names names = SplitKey(key);
  Text joined;
  int told = 0;
  for (std::size_t at = 1; at < names.size() && told < kMostNames; ++at) {
    // What stands below is the number of an account.
    if (SameName(names[at], u"User MRU")) break;
    if (SaysNothing(names[at])) continue;
    if (told++ > 0) joined += u' ';
    joined += names[at];
  }
  return joined.empty() ? Text(names.front()) : joined;
}

Text Vendor(const FoundList& list) {
  return Text(SplitKey(list.key).front());
}

Text ListName(const FoundList& list) {
  return Text(LastName(list.key));
}

Text Version(const FoundList& list) {
  const Names names = SplitKey(list.key);
  const auto version = std::find_if(names.begin(), names.end(), IsVersion);
  return version == names.end() ? Text() : Text(*version);
}

Text WholeKey(const FoundList& list) {
  return list.key;
}

// Puts in brackets what tells lists of one name apart, where it does.
void TellApart(std::vector<FoundList>& lists, Text (*mark)(const FoundList& list)) {
  std::map<Text, std::vector<FoundList*>, NameOrder> byName;
  for (FoundList& list : lists) byName[list.description.entry.EntryName].push_back(&list);
  for (const auto& [name, equals] : byName) {
    std::map<Text, int, NameOrder> marks;
    for (const FoundList* list : equals) ++marks[mark(*list)];
    if (marks.size() < 2) continue;
    for (FoundList* list : equals) {
      const Text text = mark(*list);
      if (!text.empty()) list->description.entry.EntryName += u" (" + text + u")";
    }
  }
}

}  // namespace

void NameLists(std::vector<FoundList>& lists) {
  for (FoundList& list : lists) list.description.entry.EntryName = ProgramName(list.key);
  for (const auto mark : {&Vendor, &ListName, &Version, &WholeKey}) TellApart(lists, mark);
  std::sort(lists.begin(), lists.end(), [](const FoundList& left, const FoundList& right) {
    return NameOrder()(left.description.entry.EntryName, right.description.entry.EntryName);
  });
}

}  // namespace torvane
