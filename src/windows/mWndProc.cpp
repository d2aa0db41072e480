#include "windows/mWndProc.h"

#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>

#include "windows/controls/toolkit.h"

// The list's procedure sees every message of its window, mouse moves included, so its usual path
// looks the property up through a name that is made once.

namespace torvane {
namespace {

constexpr char16_t kOldProcedure[] = u"OldWndProc";
constexpr char16_t kOwner[] = u"ObjectPtr";

struct FreeLocal {
  void operator()(WCHAR* memory) const { LocalFree(memory); }
};

struct Subclassed {
  std::set<HWND> windows;
  /// A copy of kOldProcedure, there while a window is subclassed.
  std::unique_ptr<WCHAR, FreeLocal> propertyName;
  NotifyHandler onNotify;
};

Subclassed& State() {
  static Subclassed state;
  return state;
}

void TrackSubclassedWindow(HWND hWnd, bool add) {
  Subclassed& state = State();
  if (add) {
    state.windows.insert(hWnd);
    if (state.propertyName) return;
    state.propertyName.reset(static_cast<WCHAR*>(LocalAlloc(LMEM_ZEROINIT, sizeof kOldProcedure)));
    std::memcpy(state.propertyName.get(), kOldProcedure, sizeof kOldProcedure);
  } else {
    state.windows.erase(hWnd);
    if (state.windows.empty()) state.propertyName.reset();
  }
}

LRESULT CallOld(HANDLE old, HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
  return CallWindowProcW(reinterpret_cast<WNDPROC>(old), hWnd, uMsg, wParam, lParam);
}

void ShowSubclassError(HWND hWnd, DWORD error) {
  // Two digits for each byte of the handle, and the closing NUL.
  std::array<char, 2 * sizeof hWnd + 1> window{};
  std::snprintf(window.data(), window.size(), "%" PRIXPTR, reinterpret_cast<std::uintptr_t>(hWnd));
  const Text message = u"Error subclassing window &H" + FromAnsi(window.data()) + u"\r\n\r\nErr# " +
                       Decimal(error) + u": the window's procedure can't be replaced";
  CurrentToolkit().ShowMessage(message, MB_ICONEXCLAMATION, ApplicationTitle());
}

}  // namespace

bool SubclassWindow(HWND hWnd, WNDPROC wndProc, HANDLE owner) {
  if (GetPropW(hWnd, Wide(kOldProcedure))) return true;
  TrackSubclassedWindow(hWnd, true);
  const LONG_PTR old = SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(wndProc));
  if (old != 0 && SetPropW(hWnd, Wide(kOldProcedure), reinterpret_cast<HANDLE>(old)) &&
      (!owner || SetPropW(hWnd, Wide(kOwner), owner))) {
    return true;
  }
  // Putting the old procedure back has an error number of its own.
  const DWORD error = GetLastError();
  if (old != 0) SetWindowLongPtrW(hWnd, GWLP_WNDPROC, old);
  ShowSubclassError(hWnd, error);
  return false;
}

bool UnsubclassWindow(HWND hWnd) {
  const HANDLE old = GetPropW(hWnd, Wide(kOldProcedure));
  if (!old || SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(old)) == 0) {
    return false;
  }
  RemovePropW(hWnd, Wide(kOldProcedure));
  RemovePropW(hWnd, Wide(kOwner));
  TrackSubclassedWindow(hWnd, false);
  return true;
}

void SetListNotifyHandler(NotifyHandler handler) {
  State().onNotify = std::move(handler);
}

LRESULT CALLBACK ListWindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
  if (uMsg == LVM_SETIMAGELIST) return 0;
  if (uMsg == WM_DESTROY) {
    CallOld(GetPropW(hWnd, Wide(kOldProcedure)), hWnd, uMsg, wParam, lParam);
    UnsubclassWindow(hWnd);
    return 0;
  }
  if (uMsg == kReflectedNotify && State().onNotify) {
    if (const LRESULT answer = State().onNotify(hWnd, lParam)) return answer;
  }
  return CallOld(GetPropW(hWnd, State().propertyName.get()), hWnd, uMsg, wParam, lParam);
}

}  // namespace torvane
