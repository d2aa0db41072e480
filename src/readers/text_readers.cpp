// Readers of lists whose entries are no paths to look for: URLs, texts, favourites, commands,
// hosts. None of their entries is ever missing.

#include <algorithm>

#include "readers/basListFill.h"
#include "readers/icon_paths.h"
#include "readers/list_stores.h"

namespace torvane {
namespace {

constexpr TextView kUrlColumns[] = {u"URL"};
constexpr TextView kFindReplaceColumns[] = {u"Find/Replace Data"};
constexpr TextView kRegEditColumns[] = {u"Favorite Name", u"Favorite Key"};
constexpr TextView kCommandColumns[] = {u"Command"};
constexpr TextView kHostColumns[] = {u"Host"};

// The stored text decides, capitals included; what is shown is in lower case.
ShownEntry ShowUrl(const StoredEntry& stored) {
  const Text text = AsText(stored.value);
  const Text shown = LowerCase(text);
  if (text.starts_with(u"ftp")) return {.kind = 2, .iconPath = Icons().IconFtp, .text2 = shown};
  if (text.starts_with(u"file") ||
      TextView(text).substr(std::min<std::size_t>(1, text.size())).starts_with(u":\\")) {
    return {.kind = 3, .iconPath = GetSystemDrive(), .text1 = shown};
  }
  return {.kind = 2, .iconPath = u".html", .text2 = shown};
}

ShownEntry ShowFindReplace(const StoredEntry& stored) {
  return {.kind = 6, .iconPath = Icons().IconFindReplace, .text1 = AsText(stored.value)};
}

ShownEntry ShowRegEditFavorite(const StoredEntry& stored) {
  return {.kind = 8, .iconPath = u".reg", .text1 = stored.name, .text2 = AsText(stored.value)};
}

// The Run box closes a command with a backslash and a character of its own.
ShownEntry ShowCommand(const StoredEntry& stored) {
  Text command = AsText(stored.value);
  if (!command.empty()) command.pop_back();
  return {.kind = 9, .iconPath = Icons().IconCommand, .text2 = RemoveBackslash(command)};
}

ShownEntry ShowHost(const StoredEntry& stored) {
  return {.kind = 11, .iconPath = Icons().IconHost, .text2 = LowerCase(AsText(stored.value))};
}

constexpr ListForm kUrls{kUrlColumns, CountRule::Names, PassEmpty, ShowUrl};
constexpr ListForm kFindReplace{kFindReplaceColumns, CountRule::Entries, PassEmpty,
                                ShowFindReplace};
constexpr ListForm kRegEditFavorites{kRegEditColumns, CountRule::Names, PassEmpty,
                                     ShowRegEditFavorite};
constexpr ListForm kCommands{kCommandColumns, CountRule::Entries, PassCount, ShowCommand};
constexpr ListForm kHosts{kHostColumns, CountRule::Names, PassNothing, ShowHost};

}  // namespace

void FillUrlList(const MruEntry& Entry, List& list) {
  FillRegistryForm(kUrls, Entry, list);
}

void FillFindReplaceList(const MruEntry& Entry, List& list) {
  FillRegistryForm(kFindReplace, Entry, list);
}

void FillRegEditFavorites(const MruEntry& Entry, List& list) {
  FillRegistryForm(kRegEditFavorites, Entry, list);
}

void FillCommandList(const MruEntry& Entry, List& list) {
  FillRegistryForm(kCommands, Entry, list);
}

void FillHostList(const MruEntry& Entry, List& list) {
  FillRegistryForm(kHosts, Entry, list);
}

}  // namespace torvane
