#include "readers/list_form.h"

#include "platform/extras.h"
#include "readers/icon_paths.h"

namespace torvane {
namespace {

/// Of a place that isn't found it may be known that nobody can find it from here.
Standing StandingOf(const Text& path, bool found) {
  if (found) return Standing::Found;
  return IsOutOfReach(path) ? Standing::OutOfReach : Standing::Missing;
}

}  // namespace

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

ShownEntry FileEntry(int kind, const EntryPath& path) {
  const bool found = FileExists(path.fullPath);
  return {.kind = kind,
          .iconPath = found ? path.fullPath : Icons().IconMissingFile,
          .text1 = path.fileName,
          .text2 = path.folderPath,
          .standing = StandingOf(path.fullPath, found),
          .written = path.fullPath};
}

ShownEntry ShowFile(const NamedValue& value) {
  const Text text = AsText(value.value);
  ShownEntry shown = FileEntry(0, SplitEntryPath(text));
  if (HasWildcard(text)) shown.written.reset();
  return shown;
}

ShownEntry FolderEntry(const Text& folder, bool found) {
  return {.kind = 3,
          .iconPath = found ? folder : Icons().IconMissingFile,
          .text1 = folder,
          .standing = StandingOf(folder, found),
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
