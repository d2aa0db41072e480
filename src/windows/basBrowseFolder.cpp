#include "windows/basBrowseFolder.h"

#include "storage/paths.h"
#include "windows/controls/toolkit.h"

namespace torvane {

Text BrowseForFolder(const Text& sName, Form& owner) {
  const Text title = u"Choose the folder where " + sName + u" is installed";
  return AddBackslash(CurrentToolkit().BrowseFolder(owner, title));
}

}  // namespace torvane
