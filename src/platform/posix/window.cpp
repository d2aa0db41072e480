// Windows as records in a table. A handle is a number that is never used again, so that a window
// that is gone is known to be gone.
#include "platform/posix/window.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace torvane::posix {
namespace {

constexpr DWORD kInvalidWindowHandle = 1400;
constexpr std::uintptr_t kDesktopWindow = 2;

struct Property {
  std::u16string name;
  HANDLE value = nullptr;
};

struct WindowRecord {
  WNDPROC procedure = nullptr;
  LONG style = 0;
  LONG extendedStyle = 0;
  WindowHost* host = nullptr;
  std::vector<Property> properties;
};

struct World {
  std::unordered_map<std::uintptr_t, WindowRecord> windows;
  std::uintptr_t last = kDesktopWindow;
  DesktopHost* desktop = nullptr;
  std::unordered_map<HLOCAL, std::unique_ptr<std::byte[]>> memory;
};

World& TheWorld() {
  static World world;
  return world;
}

/// The record of a window; null, with the error set, where there is none.
WindowRecord* Find(HWND window) {
  auto& windows = TheWorld().windows;
  const auto known = windows.find(reinterpret_cast<std::uintptr_t>(window));
  if (known != windows.end()) return &known->second;
  SetLastError(kInvalidWindowHandle);
  return nullptr;
}

/// What the messages of every list window look up passes here, so it copies nothing. The names that
/// programs give are ASCII.
bool SameName(std::u16string_view left, std::u16string_view right) {
  const auto fold = [](char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
  };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char16_t a, char16_t b) { return fold(a) == fold(b); });
}

std::vector<Property>::iterator FindProperty(WindowRecord& record, std::u16string_view name) {
  return std::find_if(record.properties.begin(), record.properties.end(),
                      [&](const Property& property) { return SameName(property.name, name); });
}

/// Screen minus client coordinates of a window.
POINT Origin(const WindowRecord& record) {
  return record.host->toScreen({0, 0});
}

}  // namespace

HWND RegisterWindow(WNDPROC procedure, LONG style, LONG extendedStyle, WindowHost& host) {
  World& world = TheWorld();
  world.last += 2;
  world.windows.emplace(world.last, WindowRecord{procedure, style, extendedStyle, &host, {}});
  return reinterpret_cast<HWND>(world.last);
}

void DestroyRegisteredWindow(HWND window) {
  SendMessageW(window, WM_DESTROY, 0, 0);
  TheWorld().windows.erase(reinterpret_cast<std::uintptr_t>(window));
}

void SetDesktop(DesktopHost* desktop) {
  TheWorld().desktop = desktop;
}

}  // namespace torvane::posix

using namespace torvane::posix;

LONG_PTR GetWindowLongPtrW(HWND window, int index) {
  const WindowRecord* record = Find(window);
  if (record == nullptr) return 0;
  switch (index) {
    case GWLP_WNDPROC:
      return reinterpret_cast<LONG_PTR>(record->procedure);
    case GWL_STYLE:
      return record->style;
    case GWL_EXSTYLE:
      return record->extendedStyle;
    default:
      SetLastError(ERROR_INVALID_PARAMETER);
      return 0;
  }
}

LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value) {
  WindowRecord* record = Find(window);
  if (record == nullptr) return 0;
  switch (index) {
    case GWLP_WNDPROC:
      return reinterpret_cast<LONG_PTR>(
          std::exchange(record->procedure, reinterpret_cast<WNDPROC>(value)));
    case GWL_STYLE:
      return std::exchange(record->style, static_cast<LONG>(value));
    case GWL_EXSTYLE:
      return std::exchange(record->extendedStyle, static_cast<LONG>(value));
    default:
      SetLastError(ERROR_INVALID_PARAMETER);
      return 0;
  }
}

LRESULT CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam,
                        LPARAM lParam) {
  return procedure != nullptr ? procedure(window, message, wParam, lParam) : 0;
}

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowRecord* record = Find(window);
  if (record == nullptr) return 0;
  return CallWindowProcW(record->procedure, window, message, wParam, lParam);
}

HANDLE GetPropW(HWND window, LPCWSTR name) {
  WindowRecord* record = Find(window);
  if (record == nullptr) return nullptr;
  const auto property = FindProperty(*record, name);
  return property != record->properties.end() ? property->value : nullptr;
}

BOOL SetPropW(HWND window, LPCWSTR name, HANDLE value) {
  WindowRecord* record = Find(window);
  if (record == nullptr) return FALSE;
  const auto property = FindProperty(*record, name);
  if (property != record->properties.end()) {
    property->value = value;
  } else {
    record->properties.push_back({name, value});
  }
  return TRUE;
}

HANDLE RemovePropW(HWND window, LPCWSTR name) {
  WindowRecord* record = Find(window);
  if (record == nullptr) return nullptr;
  const auto property = FindProperty(*record, name);
  if (property == record->properties.end()) return nullptr;
  const HANDLE value = property->value;
  record->properties.erase(property);
  return value;
}

BOOL GetCursorPos(POINT* screenPixels) {
  const DesktopHost* desktop = TheWorld().desktop;
  if (desktop == nullptr) return FALSE;
  *screenPixels = desktop->cursor();
  return TRUE;
}

BOOL ScreenToClient(HWND window, POINT* point) {
  const WindowRecord* record = Find(window);
  if (record == nullptr) return FALSE;
  const POINT origin = Origin(*record);
  *point = {point->x - origin.x, point->y - origin.y};
  return TRUE;
}

BOOL ClientToScreen(HWND window, POINT* point) {
  const WindowRecord* record = Find(window);
  if (record == nullptr) return FALSE;
  *point = record->host->toScreen(*point);
  return TRUE;
}

BOOL GetClientRect(HWND window, RECT* rect) {
  const WindowRecord* record = Find(window);
  if (record == nullptr) return FALSE;
  *rect = record->host->clientRect();
  return TRUE;
}

// The view repaints by itself what it has moved.
BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL /*repaint*/) {
  const WindowRecord* record = Find(window);
  if (record == nullptr) return FALSE;
  record->host->place({x, y, x + width, y + height});
  return TRUE;
}

BOOL UpdateWindow(HWND window) {
  const WindowRecord* record = Find(window);
  if (record == nullptr) return FALSE;
  record->host->paintNow();
  return TRUE;
}

BOOL ReleaseCapture() {
  DesktopHost* desktop = TheWorld().desktop;
  if (desktop == nullptr) return FALSE;
  desktop->releaseCapture();
  return TRUE;
}

HWND GetDesktopWindow() {
  return reinterpret_cast<HWND>(kDesktopWindow);
}

int GetSystemMetrics(int index) {
  const DesktopHost* desktop = TheWorld().desktop;
  return desktop != nullptr ? desktop->metric(index) : 0;
}

HDC GetDC(HWND window) {
  // The screen is the only surface: what is drawn in a window is the view's own affair.
  const bool screen = window == nullptr || window == GetDesktopWindow();
  return screen ? reinterpret_cast<HDC>(TheWorld().desktop) : nullptr;
}

int ReleaseDC(HWND /*window*/, HDC dc) {
  return dc != nullptr ? 1 : 0;
}

BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD operation) {
  DesktopHost* desktop = TheWorld().desktop;
  const bool screen = dc != nullptr && dc == reinterpret_cast<HDC>(desktop);
  if (!screen || operation != DSTINVERT) return FALSE;
  desktop->invert({x, y, x + width, y + height});
  return TRUE;
}

HLOCAL LocalAlloc(UINT /*flags*/, SIZE_T bytes) {
  // Zeroed whether it is asked for or not. A block of no size has an address too.
  auto block = std::make_unique<std::byte[]>(std::max<SIZE_T>(bytes, 1));
  const HLOCAL handle = block.get();
  TheWorld().memory.emplace(handle, std::move(block));
  return handle;
}

HLOCAL LocalFree(HLOCAL memory) {
  if (memory == nullptr || TheWorld().memory.erase(memory) != 0) return nullptr;
  SetLastError(ERROR_INVALID_HANDLE);
  return memory;
}
