// Lists whose entries are no paths to look for: URLs, texts, favourites, commands, hosts. None of
// their entries is ever missing.

#include <algorithm>

#include "readers/icon_paths.h"
#include "readers/list_form.h"

namespace torvane {
namespace {

constexpr TextView kUrlColumns[] = {u"URL"};
constexpr TextView kFindReplaceColumns[] = {u"Find/Replace Data"};
constexpr TextView kRegEditColumns[] = {u"Favorite Name", u"Favorite Key"};
constexpr TextView kCommandColumns[] = {u"Command"};
constexpr TextView kHostColumns[] = {u"Host"};

// An entry that shows and writes one text.
ShownEntry TextEntry(int kind, const Text& iconPath, const Text& text) {
  constexpr int kInText1[] = {3, 6};
  ShownEntry shown{.kind = kind, .iconPath = iconPath, .written = text};
  const bool isFirst =
      std::find(std::begin(kInText1), std::end(kInText1), kind) != std::end(kInText1);
  (isFirst ? shown.text1 : shown.text2) = text;
  return shown;
}

// The stored text decides, capitals included; what is shown is in lower case.
ShownEntry ShowUrl(const NamedValue& value) {
  const Text text = AsText(value.value);
  const Text shown = LowerCase(text);
  if (text.starts_with(u"ftp")) return TextEntry(2, Icons().IconFtp, shown);
  if (text.starts_with(u"file") ||
      TextView(text).substr(std::min<std::size_t>(1, text.size())).starts_with(u":\\")) {
    return TextEntry(3, GetSystemDrive(), shown);
  }
  return TextEntry(2, u".html", shown);
}

ShownEntry ShowFindReplace(const NamedValue& value) {
  return TextEntry(6, Icons().IconFindReplace, AsText(value.value));
}

ShownEntry ShowRegEditFavorite(const NamedValue& value) {
  return {.kind = 8, .iconPath = u".reg", .text1 = value.name, .text2 = AsText(value.value)};
}

// The Run box closes a command with a backslash and a character of its own.
ShownEntry ShowCommand(const NamedValue& value) {
  Text command = AsText(value.value);
  if (!command.empty()) command.pop_back();
  return {.kind = 9, .iconPath = Icons().IconCommand, .text2 = RemoveBackslash(command)};
}

ShownEntry ShowHost(const NamedValue& value) {
  return TextEntry(11, Icons().IconHost, LowerCase(AsText(value.value)));
}

}  // namespace

constexpr ListForm kUrlForm{kUrlColumns, CountRule::Names, PassEmpty, ShowUrl, FirstColumn};
constexpr ListForm kFindReplaceForm{kFindReplaceColumns, CountRule::Entries, PassEmpty,
                                    ShowFindReplace, FirstColumn};
constexpr ListForm kRegEditForm{kRegEditColumns, CountRule::Names, PassEmpty, ShowRegEditFavorite,
                                nullptr};
constexpr ListForm kCommandForm{kCommandColumns, CountRule::Entries, PassCount, ShowCommand,
                                nullptr};
constexpr ListForm kHostForm{kHostColumns, CountRule::Names, PassNothing, ShowHost, FirstColumn};

}  // namespace torvane
