#include "readers/list_form.h"

#include "readers/icon_paths.h"

namespace torvane {
bool PassNothing(const MruEntry& /*list*/, const NamedValue& /*value*/) {
  return false;
}

bool PassEmpty(const MruEntry& /*list*/, const NamedValue& value) {
  return Length(value.value) == 0;
}

bool PassEmptyOrCount(const MruEntry& list, const NamedValue& value) {
  return Length(value.value) == 0 || value.name == list.CountValue;
}

bool PassCount(const MruEntry& list, const NamedValue& value) {
  return value.name == list.CountValue;
}

ShownEntry FileEntry(int kind, EntryPath path) {
  const Presence presence = PresenceOf(path.sought);
  const bool isFound = presence == Presence::Found;
  return {.kind = kind,
          .iconPath = isFound ? std::move(path.sought) : Icons().IconMissingFile,
          .text1 = std::move(path.fileName),
          .text2 = std::move(path.folderPath),
          .presence = presence,
          .written = std::move(path.fullPath)};
}

ShownEntry ShowFile(const NamedValue& value) {
  const Text* const plain = std::get_if<Text>(&value.value);
  const Text number = plain ? Text() : AsText(value.value);
  const Text& text = plain ? *plain : number;
  EntryPath path = SplitEntryPath(text);
  const bool isPattern = !path.isPlain && HasWildcard(text);
  ShownEntry shown = FileEntry(0, std::move(path));
  if (isPattern) shown.written.reset();
  return shown;
}

ShownEntry FolderEntry(const Text& sought, Presence presence) {
  const Text folder = LowerCase(sought);
  return {.kind = 3,
          .iconPath = presence == Presence::Found ? sought : Icons().IconMissingFile,
          .text1 = folder,
          .presence = presence,
          .written = folder};
}

Text FileText(const ListItem& item, int folderColumn) {
  const Text& folder = item.SubItems(folderColumn);
  return folder.empty() ? item.Text() : AddBackslash(folder) + item.Text();
}

Text FileInColumns(const ListItem& item) {
  return FileText(item, 1);
}

Text FirstColumn(const ListItem& item) {
  return item.Text();
}

}  // namespace torvane
