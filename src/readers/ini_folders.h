// The store of folders in which programs keep their INI files: asked for once, then remembered.
#pragma once

#include <optional>

#include "readers/MruEntry.h"
#include "storage/clsRegistry.h"
#include "windows/controls/list.h"

namespace torvane {

/// The registry key of the store, below HKEY_CURRENT_USER: a text value a program, named by its
/// EntryName, the folder closed by a backslash.
inline constexpr TextView kIniFolderKey = u"Software\\Halvex\\Torvane\\Paths";

/// The folder of the INI file of `entry`, closed by a backslash: the one that is stored, or that
/// the user chooses now; nothing where the user gives up. Throws RaisedError where the store can't
/// be made.
std::optional<Text> IniFolder(const MruEntry& entry, const List& list);

/// Sets a registry object on the store's value for one program.
void SelectIniFolder(clsRegistry& Registry, const Text& entryName);

/// Asks the user for the folder that holds the INI file of `Entry` until one is chosen that does,
/// and stores it through `Registry`, which is set on the store. False where the user gives up.
/// The dialogues belong to the form of `list`.
bool FindIniFolder(const MruEntry& Entry, clsRegistry& Registry, const List& list);

}  // namespace torvane
