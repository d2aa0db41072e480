#include "windows/win32/shell_images.h"

#include "platform/win32/system_library.h"

#include <objbase.h>

namespace torvane {
namespace {

/// The shell's list of the size number `kind` (SHIL_...), null for none.
HIMAGELIST ShellList(int kind) {
  static const auto ask =
      SystemFunction<HRESULT WINAPI(int, const IID&, void**)>(L"shell32.dll", "SHGetImageList");
  static constexpr IID kImageList{
      0x46EB5926, 0x582E, 0x4017, {0x9F, 0xDF, 0xE8, 0x99, 0x8D, 0xAA, 0x09, 0x50}};
  void* list = nullptr;
  if (!ask || FAILED(ask(kind, kImageList, &list))) return nullptr;
  // The shell keeps its lists to the end; the count that came along is given back.
  static_cast<IUnknown*>(list)->Release();
  return static_cast<HIMAGELIST>(list);
}

HIMAGELIST SmallShellList() {
  SHFILEINFOW info{};
  return reinterpret_cast<HIMAGELIST>(SHGetFileInfoW(
      L"C:\\", FILE_ATTRIBUTE_DIRECTORY, &info, sizeof info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON));
}

int IconSize(HIMAGELIST images) {
  int width = 0;
  int height = 0;
  return ImageList_GetIconSize(images, &width, &height) ? width : 0;
}

}  // namespace

HIMAGELIST ShellImagesFor(int size) {
  constexpr int kLarge = 0;
  constexpr int kExtraLarge = 2;
  HIMAGELIST images = SmallShellList();
  for (const int kind : {kLarge, kExtraLarge}) {
    if (IconSize(images) >= size) break;
    if (const HIMAGELIST larger = ShellList(kind)) images = larger;
  }
  return images;
}

HIMAGELIST ScaledShellImages::at(int size) {
  const HIMAGELIST small = SmallShellList();
  if (IconSize(small) == size) return small;
  if (size != size_) {
    images_.reset(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 0, 64));
    size_ = size;
  }
  const HIMAGELIST source = ShellImagesFor(size);
  const int drawn = ImageList_GetImageCount(images_.get());
  const int count = ImageList_GetImageCount(small);
  ImageList_SetImageCount(images_.get(), static_cast<UINT>(count));
  for (int number = drawn; number < count; ++number) {
    const UniqueIcon icon(ImageList_GetIcon(source, number, ILD_TRANSPARENT));
    ImageList_ReplaceIcon(images_.get(), number, icon.get());
  }
  return images_.get();
}

}  // namespace torvane
