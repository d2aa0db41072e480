#include "editing/value_names.h"

#include <algorithm>
#include <array>

#include "storage/paths.h"

namespace torvane {
namespace {

struct NameRow {
  TextView form;
  TextView prefix;
  int first;   ///< number of the first entry
  int digits;  ///< at least so many
};

constexpr std::array<NameRow, 19> kNameForms = {{
    {u"00", u"", 0, 1},
    {u"11", u"", 1, 1},
    {u"File1", u"File", 1, 1},
    {u"filemenu1", u"filemenu", 1, 1},
    {u"project1", u"project", 1, 1},
    {u"extract1", u"extract", 1, 1},
    {u"MRU1", u"MRU", 1, 1},
    {u"Host1", u"Host", 1, 1},
    {u"URL1", u"URL", 1, 1},
    {u"File0", u"File", 0, 1},
    {u"file0", u"file", 0, 1},
    {u"F0", u"F", 0, 1},
    {u"History0", u"History", 0, 1},
    {u"Item_0", u"Item_", 0, 1},
    {u"LastFiles.0", u"LastFiles.", 0, 1},
    {u"LastDirs.0", u"LastDirs.", 0, 1},
    {u"BM0", u"BM", 0, 1},
    {u"URL0", u"URL", 0, 1},
    {u"File00", u"File", 0, 2},
}};

constexpr TextView kLetterForm = u"a*";

// One character from A on. Names compare without case, so the small letters would meet the capitals
// again: they are left out.
Text LetterName(int n) {
  constexpr int kBeforeSmallLetters = 32;
  constexpr int kLetters = 26;
  const int code = 64 + n + (n > kBeforeSmallLetters ? kLetters : 0);
  return Text(1, static_cast<char16_t>(code));
}

Text FileText(const ListItem& item, int pathColumn) {
  const Text& folder = item.SubItems(pathColumn);
  // A file without a folder was stored as its name alone.
  return folder.empty() ? item.Text() : AddBackslash(folder) + item.Text();
}

bool IsOneOf(TextView listType, std::initializer_list<TextView> types) {
  return std::find(types.begin(), types.end(), listType) != types.end();
}

}  // namespace

Text EntryValueName(const Text& NameForm, int n) {
  if (NameForm == kLetterForm) return LetterName(n);
  const auto* row =
      std::find_if(kNameForms.begin(), kNameForms.end(),
                   [&](const NameRow& candidate) { return candidate.form == NameForm; });
  if (row == kNameForms.end()) return {};
  Text number = Decimal(row->first + n - 1);
  const auto digits = static_cast<std::size_t>(row->digits);
  if (number.size() < digits) number.insert(0, digits - number.size(), u'0');
  return Text(row->prefix) + number;
}

Text EntryValueText(const Text& ListType, const ListItem& Item) {
  if (IsOneOf(ListType, {u"0", u"20", u"22", u"23"})) return FileText(Item, 1);
  if (ListType == u"1") return Item.SubItems(1) + u"|" + FileText(Item, 2);
  // Whatever stood behind the path was dropped by the reader; the owning program expects something.
  if (ListType == u"4") return FileText(Item, 1) + u",1";
  return Item.Text();
}

}  // namespace torvane
