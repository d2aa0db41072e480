// Owners of Windows handles, and the casts between the program's text and the W calls.
#pragma once

#include <memory>
#include <type_traits>

#include "platform/winapi.h"
#include "storage/text.h"

namespace torvane {

struct HandleRelease {
  void operator()(HWND window) const { DestroyWindow(window); }
  void operator()(HICON icon) const { DestroyIcon(icon); }
  void operator()(HMENU menu) const { DestroyMenu(menu); }
  void operator()(HIMAGELIST images) const { ImageList_Destroy(images); }
  void operator()(HDC dc) const { DeleteDC(dc); }
  void operator()(HFONT font) const { DeleteObject(font); }
  void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};

template <class Handle>
using Unique = std::unique_ptr<std::remove_pointer_t<Handle>, HandleRelease>;

/// A top-level window; its child windows go with it.
using UniqueWindow = Unique<HWND>;
using UniqueIcon = Unique<HICON>;
using UniqueMenu = Unique<HMENU>;
using UniqueImageList = Unique<HIMAGELIST>;
/// A memory device context.
using UniqueDc = Unique<HDC>;
using UniqueFont = Unique<HFONT>;
using UniqueBitmap = Unique<HBITMAP>;

struct Release {
  template <class Interface>
  void operator()(Interface* object) const {
    object->Release();
  }
};
/// A reference to an object of COM's.
template <class Interface>
using Com = std::unique_ptr<Interface, Release>;

/// Selects an object into a device context and puts the former one back.
class Selection {
 public:
  Selection(HDC dc, HGDIOBJ object) : dc_(dc), former_(SelectObject(dc, object)) {}
  ~Selection() { SelectObject(dc_, former_); }
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;

 private:
  HDC dc_;
  HGDIOBJ former_;
};

/// The screen's device context, for measuring.
class ScreenDc {
 public:
  ScreenDc() : dc_(GetDC(nullptr)) {}
  ~ScreenDc() { ReleaseDC(nullptr, dc_); }
  ScreenDc(const ScreenDc&) = delete;
  ScreenDc& operator=(const ScreenDc&) = delete;
  HDC get() const { return dc_; }

 private:
  HDC dc_;
};

/// For the W records that take their text without const and only read it.
inline wchar_t* WideForRecord(const Text& text) {
  return const_cast<wchar_t*>(Wide(text));
}

/// The module that holds the program's resources.
inline HINSTANCE ThisModule() {
  return GetModuleHandleW(nullptr);
}

}  // namespace torvane
