#include "windows/win32/screen.h"

#include "platform/win32/system_library.h"

#include <cmath>
#include <cwchar>

namespace torvane {
namespace {

constexpr wchar_t kUser[] = L"user32.dll";

/// The dots an inch that measures without a scale of their own are for.
int SystemDpi() {
  return GetDeviceCaps(ScreenDc().get(), LOGPIXELSX);
}

LOGFONTW MessageFont(int dpi) {
  static const auto ask = SystemFunction<BOOL WINAPI(UINT, UINT, void*, UINT, UINT)>(
      kUser, "SystemParametersInfoForDpi");
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  if (ask && ask(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0, static_cast<UINT>(dpi))) {
    return metrics.lfMessageFont;
  }
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dpi, SystemDpi());
  return metrics.lfMessageFont;
}

LOGFONTW FixedFont(int dpi) {
  LOGFONTW record{};
  record.lfHeight = MessageFont(dpi).lfHeight;
  record.lfCharSet = DEFAULT_CHARSET;
  record.lfQuality = CLEARTYPE_QUALITY;
  // Where Consolas is missing the system takes another font of this kind.
  record.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
  std::wcscpy(record.lfFaceName, L"Consolas");
  return record;
}

/// The light that a colour gives, from 0 to 1.
double Luminance(COLORREF color) {
  const auto light = [](BYTE value) { return std::pow(value / 255.0, 2.2); };
  return 0.2126 * light(GetRValue(color)) + 0.7152 * light(GetGValue(color)) +
         0.0722 * light(GetBValue(color));
}

int ColorIndex(SystemColor color) {
  return static_cast<int>(static_cast<std::uint32_t>(color) & 0xFFU);
}

}  // namespace

int ScreenDpi() {
  static const auto ask = SystemFunction<HRESULT WINAPI(HMONITOR, int, UINT*, UINT*)>(
      L"shcore.dll", "GetDpiForMonitor");
  constexpr int kEffective = 0;
  UINT x = 0;
  UINT y = 0;
  const HMONITOR first = MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY);
  return ask && SUCCEEDED(ask(first, kEffective, &x, &y)) ? static_cast<int>(x) : SystemDpi();
}

int WindowDpi(HWND window) {
  static const auto ask = SystemFunction<UINT WINAPI(HWND)>(kUser, "GetDpiForWindow");
  const UINT dpi = ask ? ask(window) : 0;
  return dpi != 0 ? static_cast<int>(dpi) : ScreenDpi();
}

int SystemMetricAt(int index, int dpi) {
  static const auto ask = SystemFunction<int WINAPI(int, UINT)>(kUser, "GetSystemMetricsForDpi");
  return ask ? ask(index, static_cast<UINT>(dpi))
             : MulDiv(GetSystemMetrics(index), dpi, SystemDpi());
}

void AddFrame(RECT& rect, DWORD style, DWORD extendedStyle, BOOL menu, int dpi) {
  static const auto ask = SystemFunction<BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT)>(
      kUser, "AdjustWindowRectExForDpi");
  if (ask) {
    ask(&rect, style, menu, extendedStyle, static_cast<UINT>(dpi));
  } else {
    AdjustWindowRectEx(&rect, style, menu, extendedStyle);
  }
}

HFONT Win32Fonts::get(const FontUse& use, int dpi) {
  if (use.face == FontUse::Face::Own) return nullptr;
  const int percent = static_cast<int>(std::lround(use.scale * 100));
  UniqueFont& font = fonts_[{use.face, percent, use.bold, dpi}];
  if (!font) {
    LOGFONTW record = use.face == FontUse::Face::FixedWidth ? FixedFont(dpi) : MessageFont(dpi);
    record.lfHeight = MulDiv(record.lfHeight, percent, 100);
    if (use.bold) record.lfWeight = FW_BOLD;
    font.reset(CreateFontIndirectW(&record));
  }
  return font.get();
}

COLORREF ColorOf(SystemColor color) {
  return GetSysColor(ColorIndex(color));
}

COLORREF TextColorOf(SystemColor color) {
  constexpr double kReadable = 4.5;
  const COLORREF wanted = ColorOf(color);
  const double own = Luminance(wanted) + 0.05;
  const double ground = Luminance(ColorOf(SystemColor::ButtonFace)) + 0.05;
  const double contrast = own > ground ? own / ground : ground / own;
  return contrast >= kReadable ? wanted : ColorOf(SystemColor::ButtonText);
}

HBRUSH BrushOf(SystemColor color) {
  return GetSysColorBrush(ColorIndex(color));
}

}  // namespace torvane
