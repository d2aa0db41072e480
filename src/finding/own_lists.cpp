#include "finding/own_lists.h"

#include <algorithm>
#include <map>

#include "finding/row_check.h"
#include "finding/text_file.h"
#include "platform/extras.h"
#include "storage/names.h"

namespace torvane {
namespace {

constexpr TextView kBlanks = u" \t";

TextView Trimmed(TextView text) {
  const auto begin = text.find_first_not_of(kBlanks);
  if (begin == TextView::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// The lines of one file, one after the other.
class Reader {
 public:
  Reader(const Text& file, OwnLists& lists) : file_(file), lists_(lists) {
    for (const CategoryRow& row : lists.rows)
      names_.insert(row.category + u'/' + row.entry.EntryName);
  }

  void Take(TextView line) {
    ++line_;
    line = Trimmed(line);
    if (line.empty() || line.front() == u';' || line.front() == u'#') return;
    line.front() == u'[' ? TakeSection(line) : TakeRow(line);
  }

 private:
  void TakeSection(TextView line) {
    category_ = Trimmed(line.substr(1, line.find(u']') - 1));
    const bool isOpen = line.back() != u']' || line.find(u']') + 1 != line.size();
    isSound_ = !isOpen && !category_.empty() && !HasControlCharacter(category_);
    if (!isSound_) LeaveOut(u"this is no section with a name");
  }

  void TakeRow(TextView line) {
    const auto equals = line.find(u'=');
    if (equals == TextView::npos) return LeaveOut(u"it has no '='");
    if (!isSound_) return LeaveOut(u"it stands in no section");
    MruEntry entry;
    const Text reason = ReadCheckedRow(Trimmed(line.substr(equals + 1)), entry);
    if (!reason.empty()) return LeaveOut(reason);
    const bool isNew = names_.insert(category_ + u'/' + entry.EntryName).second;
    if (!isNew) return LeaveOut(u"the category has a program of this name already");
    lists_.rows.push_back({category_, std::move(entry)});
  }

  void LeaveOut(const Text& reason) { lists_.leftOut.push_back({file_, line_, reason}); }

  const Text& file_;
  OwnLists& lists_;
  NameSet names_;  ///< of the rows so far, with their categories
  Text category_;
  bool isSound_ = false;
  int line_ = 0;
};

// Brings the rows of one category together, categories in the order in which they first come.
void GroupRows(std::vector<CategoryRow>& rows) {
  std::map<Text, std::size_t, NameOrder> places;
  for (const CategoryRow& row : rows) places.try_emplace(row.category, places.size());
  std::stable_sort(rows.begin(), rows.end(),
                   [&](const CategoryRow& left, const CategoryRow& right) {
                     return places.at(left.category) < places.at(right.category);
                   });
}

// "line 3", "lines 3, 5-9".
Text LineNumbers(const std::vector<int>& lines) {
  Text text = lines.size() == 1 ? u"line " : u"lines ";
  for (std::size_t at = 0; at < lines.size(); ++at) {
    std::size_t last = at;
    while (last + 1 < lines.size() && lines[last + 1] == lines[last] + 1) ++last;
    if (at > 0) text += u", ";
    text += Decimal(lines[at]);
    if (last > at) text += u'-' + Decimal(lines[last]);
    at = last;
  }
  return text;
}

}  // namespace

void AddOwnLists(const Text& file, std::string_view bytes, OwnLists& lists) {
  const Text text = TextOfFile(bytes);
  Reader reader(file, lists);
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find_first_of(u"\r\n", begin), text.size());
    reader.Take(TextView(text).substr(begin, end - begin));
    // Two characters end a line, or either of them.
    begin = end + (TextView(text).substr(end, 2) == u"\r\n" ? 2 : 1);
  }
  GroupRows(lists.rows);
}

OwnLists ReadOwnLists() {
  OwnLists lists;
  for (const UserFile& file : ReadUserFiles(kOwnListsFile)) {
    if (file.bytes) {
      AddOwnLists(file.path, *file.bytes, lists);
    } else {
      const TextView reason =
          file.isTooLarge ? u"the file is too large" : u"the file can't be read";
      lists.leftOut.push_back({file.path, 0, Text(reason)});
    }
  }
  return lists;
}

// What is wrong with many lines is said once, or the box wouldn't fit on the screen.
Text LeftOutMessage(const OwnLists& lists) {
  if (lists.leftOut.empty()) return {};
  constexpr int kMostReasons = 20;
  Text message = u"These rows of your own lists can't be right and have been left out:";
  int told = 0;
  std::vector<bool> isTold(lists.leftOut.size());
  const Text* file = nullptr;
  for (std::size_t at = 0; at < lists.leftOut.size(); ++at) {
    const LeftOutRow& row = lists.leftOut[at];
    if (isTold[at]) continue;
    if (told++ == kMostReasons) return message + u"\r\n\r\nThere are more.";
    std::vector<int> lines;
    for (std::size_t other = at; other < lists.leftOut.size(); ++other) {
      if (lists.leftOut[other].file != row.file || lists.leftOut[other].reason != row.reason)
        continue;
      isTold[other] = true;
      lines.push_back(lists.leftOut[other].line);
    }
    if (!file || *file != row.file) message += u"\r\n\r\n" + row.file;
    file = &row.file;
    message += u"\r\n" + (row.line == 0 ? Text() : LineNumbers(lines) + u": ") + row.reason;
  }
  return message;
}

}  // namespace torvane
