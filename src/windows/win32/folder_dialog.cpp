#include "windows/win32/folder_dialog.h"

#include "windows/win32/handles.h"

#include <shlobj.h>

#include <array>
#include <optional>

namespace torvane {
namespace {

struct FreeShellMemory {
  void operator()(void* memory) const { CoTaskMemFree(memory); }
};

const char16_t* Units(const wchar_t* text) {
  return reinterpret_cast<const char16_t*>(text);
}

/// The path of what the user has chosen in a dialogue.
Text ChosenPath(IFileOpenDialog& dialog) {
  IShellItem* item = nullptr;
  if (FAILED(dialog.GetResult(&item))) return {};
  const Com<IShellItem> chosen(item);
  wchar_t* path = nullptr;
  if (FAILED(chosen->GetDisplayName(SIGDN_FILESYSPATH, &path))) return {};
  const std::unique_ptr<wchar_t, FreeShellMemory> owned(path);
  return Units(path);
}

/// Nothing where the system has no such dialogue.
std::optional<Text> AskWithFileDialog(HWND owner, const Text& title) {
  void* made = nullptr;
  if (FAILED(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER,
                              IID_IFileOpenDialog, &made))) {
    return std::nullopt;
  }
  const Com<IFileOpenDialog> dialog(static_cast<IFileOpenDialog*>(made));
  FILEOPENDIALOGOPTIONS options = 0;
  if (FAILED(dialog->GetOptions(&options)) ||
      FAILED(dialog->SetOptions(options | FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM |
                                FOS_PATHMUSTEXIST | FOS_NOCHANGEDIR)) ||
      FAILED(dialog->SetTitle(Wide(title)))) {
    return std::nullopt;
  }
  return SUCCEEDED(dialog->Show(owner)) ? ChosenPath(*dialog) : Text();
}

Text AskWithTree(HWND owner, const Text& title) {
  BROWSEINFOW record{};
  record.hwndOwner = owner;
  record.lpszTitle = Wide(title);
  record.ulFlags = BIF_RETURNONLYFSDIRS;
  const std::unique_ptr<ITEMIDLIST, FreeShellMemory> chosen(SHBrowseForFolderW(&record));
  std::array<wchar_t, MAX_PATH> path{};
  if (!chosen || !SHGetPathFromIDListW(chosen.get(), path.data())) return {};
  return Units(path.data());
}

}  // namespace

Text ChooseFolder(HWND owner, const Text& title) {
  const auto answer = AskWithFileDialog(owner, title);
  return answer ? *answer : AskWithTree(owner, title);
}

}  // namespace torvane
