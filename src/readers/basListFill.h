// The fourteen readers: each fills the list from the store of one catalogue row. The list comes
// empty, without columns; an absent store gives the columns alone. No reader changes a list's
// store. A row is read as a list of the reader's type, whatever type it names.
#pragma once

#include "readers/entry_list.h"

namespace torvane {

// Files and folders in a registry key (file_forms.cpp).
void FillRegistryList(const MruEntry& Entry, List& list);   // 0: the data is a path
void FillFavoritesList(const MruEntry& Entry, List& list);  // 1: name|path
void FillFolderList(const MruEntry& Entry, List& list);     // 3: a folder
void FillCommaList(const MruEntry& Entry, List& list);      // 4: path,more
void FillValueNameList(const MruEntry& Entry, List& list);  // 5: the value's name is the path

// Other texts in a registry key (text_forms.cpp).
void FillUrlList(const MruEntry& Entry, List& list);           // 2
void FillFindReplaceList(const MruEntry& Entry, List& list);   // 6
void FillRegEditFavorites(const MruEntry& Entry, List& list);  // 8
void FillCommandList(const MruEntry& Entry, List& list);       // 9
void FillHostList(const MruEntry& Entry, List& list);          // 11

// INI files (ini_forms.cpp).
void FillIniList(const MruEntry& Entry, List& list);           // 20: in the Windows folder
void FillIniFolderList(const MruEntry& Entry, List& list);     // 21: folders; the user knows where
void FillInstalledIniList(const MruEntry& Entry, List& list);  // 22: files; the user knows where
void FillWinIniList(const MruEntry& Entry, List& list);        // 23: keys by number

/// Fills the list by the reader of the row's ListType. A type that no reader answers to leaves the
/// list as it is; the comparison is of texts, so "00" is no type.
void FillByListType(const MruEntry& Entry, List& list);

}  // namespace torvane
