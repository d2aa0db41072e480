#include "readers/entry_list.h"

#include <algorithm>
#include <array>

#include "platform/extras.h"
#include "platform/winapi.h"
#include "readers/icon_paths.h"
#include "storage/clsParse.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

// The shell looks at the path itself, or only at its name (a bare ".html" will do).
constexpr UINT kByPath = SHGFI_SYSICONINDEX | SHGFI_SMALLICON;
constexpr UINT kByName = SHGFI_SYSICONINDEX | SHGFI_USEFILEATTRIBUTES;

constexpr std::array<ListKindRow, 12> kKinds = {{
    {0, kByPath, 1, 2, 0},
    {4, kByPath, 1, 2, 0},
    {5, kByPath, 1, 2, 0},
    {1, kByPath, 1, 3, 2},
    {2, kByName, 2, 0, 0},
    {9, kByName, 2, 0, 0},
    {11, kByName, 2, 0, 0},
    {3, kByPath, 1, 0, 0},
    {6, kByPath, 1, 0, 0},
    {8, kByName, 1, 2, 0},
    {12, kByPath, 1, 2, 3},
    {13, kByName, 1, 2, 3},
}};

// The image that the shell gave last. Runs of entries have the same one, and the shell takes longer
// over it than the rest of an entry takes together.
struct LastImage {
  Text iconPath;
  UINT flags = 0;
  int number = 0;
};

LastImage& Last() {
  static LastImage last;
  return last;
}

int ImageNumber(const Text& iconPath, UINT flags) {
  LastImage& last = Last();
  if (last.flags != flags || last.iconPath != iconPath) {
    SHFILEINFOW info{};
    // A path that the shell doesn't know leaves image 0.
    SHGetFileInfoW(Wide(iconPath), 0, &info, sizeof info, flags);
    last = {iconPath, flags, ImageOfIconFile(iconPath, info.iIcon)};
  }
  return last.number;
}

void SetImage(const List& list, const ListItem& item, int image) {
  LVITEMW record{};
  record.mask = LVIF_IMAGE;
  record.iItem = item.Index() - 1;
  record.iImage = image;
  SendMessageW(list.hWnd(), LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&record));
}

}  // namespace

ListCounters& Counters() {
  static ListCounters counters;
  return counters;
}

void ResetCounters() {
  Counters() = {};
}

IconPaths& Icons() {
  static IconPaths paths;
  return paths;
}

const ListKindRow* FindListKind(int ListKind) {
  const auto* row = std::find_if(kKinds.begin(), kKinds.end(), [&](const ListKindRow& candidate) {
    return candidate.kind == ListKind;
  });
  return row == kKinds.end() ? nullptr : row;
}

ListItem* AddListEntry(List& list, int ListKind, const Text& IconPath, const Text& Text1,
                       const Text& Text2, const Text& Tag, const Text& Text3, std::size_t Number) {
  const ListKindRow* row = FindListKind(ListKind);
  if (!row) return nullptr;

  const std::array<const Text*, 4> texts = {nullptr, &Text1, &Text2, &Text3};
  const auto chosen = [&](int number) -> const Text& {
    return *texts[static_cast<std::size_t>(number)];
  };
  const int image = ImageNumber(IconPath, row->flags);
  ListItem& item = list.ListItems().Add(chosen(row->text));
  if (row->subItem1 != 0) item.SubItems(1, chosen(row->subItem1));
  if (row->subItem2 != 0) item.SubItems(2, chosen(row->subItem2));
  item.Tag(Tag);
  item.Number(Number);
  if (IconPath == Icons().IconMissingFile) item.ImageNote(u"Missing");
  SetImage(list, item, image);
  return &item;
}

void ClearEntryList(List& list) {
  Last() = {};
  list.ColumnHeaders().Clear();
  list.ListItems().Clear();
  list.Source(nullptr);
  CurrentToolkit().DoEvents();
}

LRESULT SetListImageList(HWND window, LPARAM imageList, WPARAM kind) {
  return SendMessageW(window, LVM_SETIMAGELIST, kind, imageList);
}

EntryPath SplitEntryPath(const Text& text) {
  EntryPath path;
  path.fullPath = LowerCase(RemoveBackslash(GetLongPath(text)));
  clsParse parser;
  path.fileName = parser.ElementAsString(parser.Initialise(path.fullPath, u"\\"));
  path.folderPath = path.fullPath.substr(0, path.fullPath.size() - path.fileName.size());
  if (path.folderPath.size() > 3) path.folderPath = RemoveBackslash(path.folderPath);
  return path;
}

}  // namespace torvane
