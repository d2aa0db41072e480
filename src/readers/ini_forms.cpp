// Lists in INI files.

#include "readers/list_form.h"

namespace torvane {
namespace {

// Unlike the registry's folder lists, this one knows no drives.
ShownEntry ShowIniFolder(const NamedValue& value) {
  Text sought = AsText(value.value);
  const Presence presence = FolderPresence(sought);
  return FolderEntry(sought, presence);
}

}  // namespace

constexpr ListForm kIniFileForm{kFileColumns, CountRule::Entries, PassEmpty, ShowFile,
                                FileInColumns};
constexpr ListForm kIniFolderForm{kFolderColumns, CountRule::Entries, PassNothing, ShowIniFolder,
                                  FirstColumn};

}  // namespace torvane
