#include "readers/entry_list.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "platform/extras.h"
#include "platform/winapi.h"
#include "readers/icon_paths.h"
#include "storage/clsParse.h"
#include "storage/file_lookups.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

// The shell looks at the path itself, or only at its name (a bare ".html" will do).
constexpr UINT kByPath = SHGFI_SYSICONINDEX | SHGFI_SMALLICON;
constexpr UINT kByName = SHGFI_SYSICONINDEX | SHGFI_USEFILEATTRIBUTES;
constexpr UINT kByKind = kByPath | SHGFI_USEFILEATTRIBUTES;

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

constexpr TextView kRootMissing = u"Missing: its drive or server can't be reached";
constexpr TextView kOutOfReach = u"Can't be reached";

// What the shell has been asked in this fill, which takes longer than all else about an entry: by
// path, by extension, and by two words that are neither.
constexpr TextView kFolderKind = u"<folder>";
constexpr TextView kPlainKind = u"<file>";
struct Images {
  std::unordered_map<Text, int> known;
  const std::pair<const Text, int>* last = nullptr;
};

Images& KnownImages() {
  static Images images;
  return images;
}

template <class Ask>
int KnownImage(const Text& name, const Ask& ask) {
  Images& images = KnownImages();
  if (!images.last || !SameText(images.last->first, name)) {
    auto known = images.known.find(name);
    if (known == images.known.end()) known = images.known.emplace(name, ask()).first;
    images.last = &*known;
  }
  return images.last->second;
}

int AskShell(const Text& name, DWORD attributes, UINT flags) {
  SHFILEINFOW info{};
  // A path that the shell doesn't know leaves image 0.
  SHGetFileInfoW(Wide(name), attributes, &info, sizeof info, flags);
  return info.iIcon;
}

int AskByPath(const Text& path, UINT flags) {
  return ImageOfIconFile(path, AskShell(path, 0, flags));
}

bool IsOwnIcon(const Text& path) {
  const IconPaths& icons = Icons();
  const Text* const own[] = {&icons.IconMissingFile, &icons.IconFindReplace, &icons.IconHost,
                             &icons.IconCommand, &icons.IconFtp};
  return std::any_of(std::begin(own), std::end(own),
                     [&](const Text* icon) { return *icon == path; });
}

// With its point; empty for none.
Text ExtensionOf(const Text& path) {
  const TextView name = TextView(path).substr(path.find_last_of(u"\\/") + 1);
  const std::size_t point = name.rfind(u'.');
  return point == TextView::npos ? Text() : LowerCase(Text(name.substr(point)));
}

int DriveImage(const Text& path) {
  return KnownImage(path, [&] {
    if (IsOnThisMachine(path)) return AskByPath(path, kByPath);
    return IsRootThere(path) ? AskShell(path, FILE_ATTRIBUTE_DIRECTORY, kByKind) : 0;
  });
}

// The picture of what a path leads to. Its file is only opened for a picture of its own, and where
// that costs no way over a network.
int ImageOfPath(const Text& path) {
  constexpr TextView kWithPicture[] = {u".exe", u".ico", u".cur", u".ani", u".lnk"};
  const Images& images = KnownImages();
  if (images.last && SameText(images.last->first, path)) return images.last->second;
  if (IsOwnIcon(path)) return KnownImage(path, [&] { return AskByPath(path, kByPath); });
  const FileLookups lookups;
  if (RootOf(path) == AddBackslash(path)) return DriveImage(path);
  if (HasWildcard(path)) return 0;
  const Sight& sight = LookFor(path);
  if (sight.presence != Presence::Found) return 0;
  if (sight.isFolder) {
    return KnownImage(Text(kFolderKind),
                      [] { return AskShell(u"x", FILE_ATTRIBUTE_DIRECTORY, kByKind); });
  }
  const Text extension = ExtensionOf(path);
  const bool hasPicture = std::find(std::begin(kWithPicture), std::end(kWithPicture), extension) !=
                          std::end(kWithPicture);
  if (hasPicture && IsOnThisMachine(path)) {
    return KnownImage(path, [&] { return AskByPath(path, kByPath); });
  }
  return KnownImage(extension.empty() ? Text(kPlainKind) : extension, [&] {
    return AskShell(extension.empty() ? u"x" : extension, FILE_ATTRIBUTE_NORMAL, kByKind);
  });
}

int ImageNumber(const Text& iconPath, UINT flags) {
  if (flags == kByPath) return ImageOfPath(iconPath);
  return KnownImage(iconPath, [&] { return AskByPath(iconPath, flags); });
}

void SetImage(const List& list, const ListItem& item, int image) {
  LVITEMW record{};
  record.mask = LVIF_IMAGE;
  record.iItem = item.Index() - 1;
  record.iImage = image;
  SendMessageW(list.hWnd(), LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&record));
}

// The last of the elements between backslashes, of which double quotes protect some.
Text LastElement(const Text& path) {
  clsParse parser;
  return parser.ElementAsString(parser.Initialise(path, u"\\"));
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

TextView NoteOn(Presence presence) {
  switch (presence) {
    case Presence::Missing:
      return u"Missing";
    case Presence::RootMissing:
      return kRootMissing;
    case Presence::OutOfReach:
      return kOutOfReach;
    default:
      return {};
  }
}

bool SaysUnreachable(TextView note) {
  return note == kRootMissing || note == kOutOfReach;
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
  if (SameText(IconPath, Icons().IconMissingFile)) item.ImageNote(NoteOn(Presence::Missing));
  SetImage(list, item, image);
  return &item;
}

void ForgetImages() {
  KnownImages() = {};
}

void ClearEntryList(List& list) {
  list.ColumnHeaders().Clear();
  list.ListItems().Clear();
  list.Source(nullptr);
  CurrentToolkit().DoEvents();
}

LRESULT SetListImageList(HWND window, LPARAM imageList, WPARAM kind) {
  return SendMessageW(window, LVM_SETIMAGELIST, kind, imageList);
}

EntryPath SplitEntryPath(const Text& text) {
  const FileLookups lookups;
  EntryPath path;
  Text closed;
  closed.reserve(text.size() + 1);
  closed = text;
  path.sought = RemoveBackslash(GetLongPath(std::move(closed)));
  path.fullPath = LowerCase(path.sought);
  path.isPlain = LookFor(path.sought).isPlain;
  path.fileName = path.isPlain ? path.fullPath.substr(path.fullPath.rfind(u'\\') + 1)
                               : LastElement(path.fullPath);
  path.folderPath = path.fullPath.substr(0, path.fullPath.size() - path.fileName.size());
  if (path.folderPath.size() > 3) path.folderPath = RemoveBackslash(std::move(path.folderPath));
  return path;
}

}  // namespace torvane
