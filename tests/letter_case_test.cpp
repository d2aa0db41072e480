// Which names are one: in comparing, in lower case, as values of a key and as files of a folder.
#include <gtest/gtest.h>

#include <set>

#include "platform/winapi.h"
#include "storage/text.h"
#include "support/printing.h"

namespace torvane::testing {
namespace {

TEST(LetterCaseTest, LettersHaveOnePartnerOrNone) {
  constexpr std::pair<TextView, TextView> kOne[] = {
      {u"i", u"I"},           {u"\u00E5", u"\u00C5"}, {u"\u03C3", u"\u03A3"},
      {u"\u01C6", u"\u01C4"}, {u"\u0436", u"\u0416"}, {u"\u10D0", u"\u1C90"},
      {u"\uAB70", u"\u13A0"}, {u"\u1F80", u"\u1F88"}, {u"\u00FF", u"\u0178"},
      {u"\u2C65", u"\u023A"},
  };
  for (const auto& [small, capital] : kOne) {
    EXPECT_EQ(LowerCase(Text(capital)), small) << Text(capital);
    EXPECT_TRUE(SameName(small, capital)) << Text(capital);
  }
  // Each a name of its own, though a table of Unicode leads from one to another.
  const std::set<Text, NameOrder> names = {
      u"i",      u"\u0130", u"\u0131", u"k",          u"\u212A",     u"s",      u"\u017F",
      u"\u00DF", u"\u1E9E", u"\u03C9", u"\u2126",     u"\u00E5",     u"\u212B", u"\u03C3",
      u"\u03C2", u"\u00B5", u"\u03BC", u"\u01C6",     u"\u01C5",     u"\u03B8", u"\u03F4",
      u"\u03D1", u"\u1E61", u"\u1E9B", u"\U00010400", u"\U00010428", u""};
  EXPECT_EQ(names.size(), 27U);
  for (const Text& name : names) {
    EXPECT_EQ(LowerCase(name), name) << name;
    for (const Text& other : names) EXPECT_EQ(SameName(name, other), &name == &other);
  }
}

TEST(LetterCaseTest, ComparesByCapitals) {
  struct Row {
    TextView left;
    TextView right;
    int with;
    int without;
  };
  constexpr Row kRows[] = {
      {u"a_", u"A_", CSTR_GREATER_THAN, CSTR_EQUAL},
      {u"_", u"A", CSTR_GREATER_THAN, CSTR_GREATER_THAN},
      {u"_", u"a", CSTR_LESS_THAN, CSTR_GREATER_THAN},
      {u"ab", u"Abc", CSTR_GREATER_THAN, CSTR_LESS_THAN},
      {u"\uFF00", u"\U0001F600", CSTR_GREATER_THAN, CSTR_GREATER_THAN},
      {u"", u"", CSTR_EQUAL, CSTR_EQUAL},
  };
  for (const Row& row : kRows) {
    const auto compare = [&row](BOOL ignoreCase) {
      return CompareStringOrdinal(reinterpret_cast<LPCWSTR>(row.left.data()),
                                  static_cast<int>(row.left.size()),
                                  reinterpret_cast<LPCWSTR>(row.right.data()), -1, ignoreCase);
    };
    EXPECT_EQ(compare(FALSE), row.with) << Text(row.left);
    EXPECT_EQ(compare(TRUE), row.without) << Text(row.left);
  }
}

}  // namespace
}  // namespace torvane::testing
