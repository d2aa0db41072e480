// Lists in INI files.

#include "readers/list_form.h"

namespace torvane {
namespace {

// Unlike the registry's folder lists, this one knows no drives.
ShownEntry ShowIniFolder(const NamedValue& value) {
  Text folder = LowerCase(AsText(value.value));
  const bool found = FolderExists(folder);
  return FolderEntry(folder, found);
}

}  // namespace

constexpr ListForm kIniFileForm{kFileColumns, CountRule::Entries, PassEmpty, ShowFile,
                                FileInColumns};
constexpr ListForm kIniFolderForm{kFolderColumns, CountRule::Entries, PassNothing, ShowIniFolder,
                                  FirstColumn};

}  // namespace torvane
