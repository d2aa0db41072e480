#include "support/generated_lists.h"

#include <algorithm>
#include <array>

#include "platform/winapi.h"
#include "storage/names.h"
#include "storage/raised_error.h"

namespace torvane::testing {
namespace {

constexpr TextView kRows[] = {
    u"Test,TorvaneTest\\Generated,0,*,File,1,MRUCount,S,*",
    u"Test,TorvaneTest\\Generated,0,*,0,0,*,*,*",
    u"Test,TorvaneTest\\Generated,1,*,1,1,*,*,*",
    u"Test,TorvaneTest\\Generated,2,*,URL,0,*,*,*",
    u"Test,TorvaneTest\\Generated,3,*,BM,00,MRUCount,D,*",
    u"Test,TorvaneTest\\Generated,4,*,MRU,1,MRUCount,S,*",
    u"Test,TorvaneTest\\Generated,5,*,*,*,*,*,*",
    u"Test,TorvaneTest\\Generated,6,*,0,0,*,*,*",
    u"Test,TorvaneTest\\Generated,8,*,*,*,*,*,*",
    u"Test,TorvaneTest\\Generated,9,*,a,*,MRUList,S,*",
    u"Test,TorvaneTest\\Generated,11,*,Host,1,*,*,*",
    u"Torvane Test,torvane-test.ini,20,List,File,1,*,*,*",
    u"Torvane Test,torvane-test.ini,21,List,Dir,1,*,*,*",
    u"Torvane Test,torvane-test.ini,22,List,MRU,1,*,*,*",
    u"Torvane Test,torvane-test.ini,23,List,RecentFile,0,*,*,*",
};

constexpr TextView kPieces[] = {
    u"C:\\",   u"c:/",      u"\\",     u"\\\\",   u"/",     u"|",       u",",          u"\"",
    u"'",      u"%",        u"%%",     u" ",      u"  ",    u".",       u".TXT",       u"A",
    u"b",      u"Dir",      u"~1",     u"=",      u";",     u"[x]",     u"*",          u"?",
    u"日本",   u"Ж Ω",      u"İi",     u"\u212A", u"ẞß",    u"é€",      u"\U0001F600", u"\xD83D",
    u"\xDE00", u"%windir%", u"%TEMP%", u"ftp",    u"file:", u"http://", u"12",         u"&H1F",
    u"\u0130", u"\u0085",   u"\\1",    u"\"x\"",  u"1,234", u"C:",      u"\t",         u"Q:"};

/// Text that an INI line can hold in its file.
Text ForLine(Text text, bool isWide) {
  std::erase_if(text, [](char16_t unit) { return unit < u' ' && unit != u'\t'; });
  return isWide ? text : FromAnsi(ToAnsi(text));
}

Text MakeText(Choices& choices, const GeneratedWorld& world) {
  Text text;
  if (choices.OneIn(4)) text = choices.OneOf(world.realPaths);
  for (std::uint32_t left = choices.Below(6); left > 0; --left) text += choices.OneOf(kPieces);
  if (choices.OneIn(40)) text.append(choices.Below(600), u'x');
  if (choices.OneIn(6)) text = u"\"" + text + u"\"";
  if (choices.OneIn(4)) text = choices.OneOf(world.realPaths) + Text(choices.OneOf(kPieces)) + text;
  return text;
}

Bytes MakeData(Choices& choices, const Text& text, std::int32_t type) {
  if (type == 4 || type == 5) return Bytes(choices.Below(6), std::byte{7});
  if (type == 3 && !choices.OneIn(3)) {
    const std::string ansi = ToAnsi(text) + std::string(choices.Below(3), '\0');
    const auto* first = reinterpret_cast<const std::byte*>(ansi.data());
    return {first, first + ansi.size()};
  }
  Bytes bytes = BytesOfText(text);
  const auto ending = choices.Below(12);
  if (ending != 0) bytes.insert(bytes.end(), 2, std::byte{0});
  if (ending == 1) bytes.insert(bytes.end(), 2, std::byte{0});
  if (ending == 2) bytes.push_back(std::byte{'x'});
  if (ending == 3) bytes.clear();
  return bytes;
}

/// What a key of the list holds.
StorePicture MakeKeyValues(Choices& choices, const GeneratedWorld& world, const MruEntry& row) {
  constexpr std::int32_t kTypes[] = {1, 1, 1, 1, 1, 2, 3, 4, 5, 7, 0, 11, 0x12345};
  StorePicture picture{true, {}};
  NameSet names;
  const std::vector<Text> known = NamesOfForm(row.ValuePrefix + row.FirstIndex).First(12);
  for (std::uint32_t left = 1 + choices.Below(8); left > 0; --left) {
    const bool isKnown = !known.empty() && !choices.OneIn(4);
    Text name = isKnown ? choices.OneOf(known) : MakeText(choices, world);
    if (choices.OneIn(12)) name = row.CountValue;
    std::erase(name, u'\0');
    if (!names.insert(name).second) continue;
    const std::int32_t type = choices.OneOf(kTypes);
    Text text = MakeText(choices, world);
    if (choices.OneIn(20)) text += Text(u"\0more", 5);
    picture.values.push_back({name, type, MakeData(choices, text, type)});
  }
  return picture;
}

std::string MakeIni(Choices& choices, const GeneratedWorld& world, const MruEntry& row) {
  const bool isWide = choices.OneIn(2);
  const EntryNames names = NamesOfForm(row.ValuePrefix + row.FirstIndex);
  Text lines = u"[Before]\r\nx = 1\r\n";
  lines += choices.OneIn(2) ? u"[List]\r\n" : u"[list] ; y\r\n ; a comment\r\n";
  const auto count = static_cast<std::int64_t>(1 + choices.Below(8));
  for (std::int64_t n = 1; n <= count; ++n) {
    const TextView between = choices.OneIn(5) ? u" = " : u"=";
    lines += names.Numbered(n) + Text(between) + ForLine(MakeText(choices, world), isWide);
    lines += choices.OneIn(8) ? u" \r\n\r\n" : u"\r\n";
    // What stands behind a line or a section of the same name is read by nobody.
    if (choices.OneIn(12))
      lines +=
          names.Numbered(1 + choices.Below(static_cast<std::uint32_t>(n))) + u"=C:\\second\r\n";
    if (choices.OneIn(20)) lines += u"bare\r\n";
  }
  if (choices.OneIn(2)) lines += u"[After]\r\ny=2\r\n";
  if (choices.OneIn(8)) lines += u"[LIST]\r\n" + names.Numbered(1) + u"=C:\\second\r\n";
  if (choices.OneIn(4)) lines.resize(lines.size() - 2);
  if (!isWide) return ToAnsi(lines);
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : lines) {
    bytes += static_cast<char>(unit & 0xFFU);
    bytes += static_cast<char>(unit >> 8U);
  }
  return bytes;
}

using Row = std::pair<std::array<Text, 3>, bool>;

std::vector<Row> RowsOf(const List& list, bool chosenToo) {
  std::vector<Row> rows;
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    const ListItem& item = list.ListItems()(n);
    if (!chosenToo && item.Selected()) continue;
    const ShownRow row = RowOf(item);
    rows.emplace_back(row.texts, row.missing);
  }
  // The registry's order may be its own.
  std::sort(rows.begin(), rows.end());
  return rows;
}

struct Command {
  const char* name;
  void (*run)(const DeleteContext& context);
  bool (*takes)(Choices& choices, const ListItem& item);
};
constexpr Command kCommands[] = {
    {"selected", DeleteSelectedEntries,
     [](Choices& choices, const ListItem&) { return choices.OneIn(2); }},
    {"missing", DeleteMissingEntries,
     [](Choices&, const ListItem& item) { return IsMissing(item.Tag()); }},
    {"all", DeleteAllEntries, [](Choices&, const ListItem&) { return true; }},
};

std::string Printed(const Text& text) {
  std::string printed;
  for (const char16_t unit : text) {
    constexpr char kDigits[] = "0123456789abcdef";
    if (unit >= u' ' && unit < 0x7F) {
      printed += static_cast<char>(unit);
      continue;
    }
    printed += "\\u";
    for (const unsigned shift : {12U, 8U, 4U, 0U}) printed += kDigits[(unit >> shift) & 15U];
  }
  return printed;
}

std::string Printed(const std::vector<Row>& rows) {
  std::string printed;
  for (const auto& [texts, missing] : rows) {
    printed += missing ? "\n  missing" : "\n  found";
    for (const Text& text : texts) printed += " <" + Printed(text) + ">";
  }
  return printed;
}

std::string Printed(const StorePicture& picture) {
  std::string printed;
  for (const StoredValue& value : picture.values) {
    printed += "\n  <" + Printed(value.name) + "> " + std::to_string(value.type) + " <" +
               Printed(TextOfBytes(value.bytes)) + "> of " + std::to_string(value.bytes.size());
  }
  return printed;
}

/// One run: the list as it was, and what became of it.
class Run {
 public:
  Run(Choices& choices, GeneratedWorld& world)
      : choices_(choices),
        world_(world),
        row_(EntryFromRow(choices.OneOf(kRows))),
        command_(choices.OneOf(kCommands)) {}

  std::string Go() {
    Put();
    Read();
    if (world_.context.list.ListItems().Count() == 0) return {};
    const StorePicture before = *ShownIn(world_.context.list)->picture;
    const std::vector<Row> rows = RowsOf(world_.context.list, true);
    Choose();
    const std::vector<Row> staying = RowsOf(world_.context.list, false);
    try {
      command_.run(world_.context);
      if (choices_.OneIn(4)) world_.writeBack();
      const std::vector<Row> shown = RowsOf(world_.context.list, true);
      Read();
      const std::vector<Row> then = RowsOf(world_.context.list, true);
      if (then != staying || shown != staying) {
        return Told("stays", before) + "\nto stay:" + Printed(staying) + "\nread:" + Printed(then);
      }
      UndoDelete(world_.context);
      Read();
      const StorePicture after = *ShownIn(world_.context.list)->picture;
      if (after.values != before.values) return Told("is put back", before) + Printed(after);
      if (world_.givesBackBytes && IsIni() && world_.iniBytes() != ini_)
        return Told("has its bytes again", before) + "\n" + ini_ + "\n" + world_.iniBytes();
    } catch (const RaisedError& error) {
      return Told("raises no error", before) + "\n" + Printed(error.Description());
    }
    return {};
  }

 private:
  bool IsIni() const { return row_.Section != kNone; }

  void Put() {
    if (IsIni()) {
      ini_ = MakeIni(choices_, world_, row_);
      world_.putIni(ini_);
      return;
    }
    const KeyStore store(u"software\\" + row_.Location);
    store.Replace(store.Read(), MakeKeyValues(choices_, world_, row_), Clearing::EachValue);
  }

  void Read() {
    ClearEntryList(world_.context.list);
    FillByListType(row_, world_.context.list);
  }

  void Choose() {
    List& list = world_.context.list;
    for (int n = 1; n <= list.ListItems().Count(); ++n) {
      list.ListItems()(n).Selected(command_.takes(choices_, list.ListItems()(n)));
    }
  }

  std::string Told(const char* what, const StorePicture& before) const {
    return "type " + Printed(row_.ListType) + ", " + command_.name + ": not all " + what +
           "\nthe store was:" + Printed(before);
  }

  Choices& choices_;
  GeneratedWorld& world_;
  MruEntry row_;
  const Command& command_;
  std::string ini_;
};

}  // namespace

std::string RunGeneratedList(Choices& choices, GeneratedWorld& world) {
  return Run(choices, world).Go();
}

}  // namespace torvane::testing
