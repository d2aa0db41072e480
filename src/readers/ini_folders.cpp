#include "readers/ini_folders.h"

#include "storage/paths.h"
#include "windows/basBrowseFolder.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

Text NotFoundMessage(const Text& entryName) {
  return u"I could not find the ini file for " + entryName +
         u".\r\n\r\n"
         u"Possible causes are:\r\n"
         u"1. " +
         entryName +
         u" is not installed, click cancel.\r\n"
         u"2. The wrong directory was selected, click ok to try again.";
}

}  // namespace

std::optional<Text> IniFolder(const MruEntry& entry, const List& list) {
  clsRegistry registry;
  SelectIniFolder(registry, entry.EntryName);
  if (!registry.KeyExists()) registry.CreateKey();
  if (Length(registry.Value()) == 0 && !FindIniFolder(entry, registry, list)) return std::nullopt;
  return AsText(registry.Value());
}

void SelectIniFolder(clsRegistry& Registry, const Text& entryName) {
  Registry.ClassKey(kCurrentUser);
  Registry.SectionKey(Text(kIniFolderKey));
  Registry.ValueType(kTextType);
  Registry.ValueKey(entryName);
}

bool FindIniFolder(const MruEntry& Entry, clsRegistry& Registry, const List& list) {
  const Text message = NotFoundMessage(Entry.EntryName);
  while (true) {
    const Text folder = BrowseForFolder(Entry.EntryName, list.Parent());
    if (folder.size() < 2) return false;
    if (FileExists(IniFileInUse(folder + Entry.Location))) {
      SelectIniFolder(Registry, Entry.EntryName);
      Registry.Value(folder);
      return true;
    }
    const int answer =
        CurrentToolkit().ShowMessage(message, MB_OKCANCEL | MB_ICONEXCLAMATION, ApplicationTitle());
    if (answer == IDCANCEL) return false;
  }
}

}  // namespace torvane
