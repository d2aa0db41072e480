#include "windows/win32/theme.h"

#include "platform/win32/system_library.h"

#include <uxtheme.h>

namespace torvane {
namespace {

constexpr wchar_t kThemes[] = L"uxtheme.dll";

}  // namespace

bool IsThemed() {
  static const auto ask = SystemFunction<decltype(IsAppThemed)>(kThemes, "IsAppThemed");
  return ask && ask();
}

void UseExplorerTheme(HWND control) {
  static const auto set = SystemFunction<decltype(SetWindowTheme)>(kThemes, "SetWindowTheme");
  if (set) set(control, L"Explorer", nullptr);
}

}  // namespace torvane
