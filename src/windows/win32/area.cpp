// An area is painted in a bitmap and shown in one step, so that a progress bar drawn over its text
// doesn't flicker.
#include "windows/win32/area.h"

namespace torvane {
namespace {

void Paint(HWND window, AreaEvents& area) {
  PAINTSTRUCT record{};
  const HDC screen = BeginPaint(window, &record);
  RECT client{};
  GetClientRect(window, &client);
  const UniqueDc dc(CreateCompatibleDC(screen));
  const UniqueBitmap bitmap(CreateCompatibleBitmap(screen, client.right, client.bottom));
  {
    const Selection selected(dc.get(), bitmap.get());
    area.onPaint(dc.get(), client.right, client.bottom);
    BitBlt(screen, 0, 0, client.right, client.bottom, dc.get(), 0, 0, SRCCOPY);
  }
  EndPaint(window, &record);
}

LRESULT CALLBACK AreaProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (auto* area = dynamic_cast<AreaEvents*>(Win32Control::Of(window))) {
    if (message == WM_ERASEBKGND) return 1;
    if (message == WM_PAINT) {
      Paint(window, *area);
      return 0;
    }
    if (const auto answer = area->onMessage(message, wParam, lParam)) return *answer;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

const wchar_t* AreaClass() {
  static constexpr wchar_t kName[] = L"TorvaneArea";
  static const ATOM registered = [] {
    WNDCLASSEXW record{};
    record.cbSize = sizeof record;
    record.lpfnWndProc = AreaProcedure;
    record.hInstance = ThisModule();
    record.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    record.lpszClassName = kName;
    return RegisterClassExW(&record);
  }();
  return registered ? kName : L"";
}

}  // namespace torvane
