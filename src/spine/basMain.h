// The program's start: temporary files, the catalogue's way into the tree, progress on the splash
// window. Hands on the path operations and StripAtNull, which are looked for here too.
#pragma once

#include <functional>

#include "readers/icon_paths.h"
#include "storage/paths.h"
#include "storage/text.h"
#include "windows/controls/picture_box.h"
#include "windows/controls/tree.h"

namespace torvane {

/// Shows the splash window, extracts the resources, loads and shows the main window. The caller
/// runs the toolkit's loop behind it.
void Main();

/// Writes the five list icons and the catalogue from the resources to new files in the temporary
/// folder and sets Icons() and CatalogueFile(). Throws RaisedError, which names the folder, where
/// it can't be used; nothing is left behind then.
void ExtractResources();

/// The catalogue's temporary file.
Text& CatalogueFile();

/// Deletes the list icons' temporary files.
void DeleteIconFiles();

/// Hears of each category as it is loaded: how many there are, its number from 1, its name.
using LoadProgress =
    std::function<void(std::int32_t count, std::int32_t number, const Text& category)>;

/// Fills the main window's tree from the catalogue and deletes the catalogue's file.
void LoadCatalogue(Tree& tree, const LoadProgress& progress);

/// Draws `Caption` and over it a bar of `Value` parts of `MaxValue`. Nothing for a Value above
/// MaxValue.
void ShowProgress(PictureBox& Picture, std::int32_t MaxValue, std::int32_t Value,
                  const Text& Caption);

/// The shell's image list for SHGFI_ flags (SHGFI_SMALLICON); it is the system's, never destroyed
/// here.
DWORD_PTR GetSystemImageList(UINT Flags);

}  // namespace torvane
