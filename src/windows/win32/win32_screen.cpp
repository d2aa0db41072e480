#include "windows/win32/win32_screen.h"

#include <cmath>
#include <cwchar>

namespace torvane {
namespace {

LOGFONTW MessageFont() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  return metrics.lfMessageFont;
}

int ColorIndex(SystemColor color) {
  return static_cast<int>(static_cast<std::uint32_t>(color) & 0xFFU);
}

}  // namespace

int ScreenDpi() {
  static const int dpi = GetDeviceCaps(ScreenDc().get(), LOGPIXELSX);
  return dpi;
}

HFONT Win32Fonts::message(float scale, bool bold) {
  const int percent = static_cast<int>(std::lround(scale * 100));
  UniqueFont& font = message_[{percent, bold}];
  if (!font) {
    LOGFONTW record = MessageFont();
    record.lfHeight = MulDiv(record.lfHeight, percent, 100);
    if (bold) record.lfWeight = FW_BOLD;
    font.reset(CreateFontIndirectW(&record));
  }
  return font.get();
}

HFONT Win32Fonts::fixedWidth() {
  if (!fixedWidth_) {
    LOGFONTW record{};
    record.lfHeight = MessageFont().lfHeight;
    record.lfCharSet = DEFAULT_CHARSET;
    record.lfQuality = CLEARTYPE_QUALITY;
    // Where Consolas is missing the system takes another font of this kind.
    record.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
    std::wcscpy(record.lfFaceName, L"Consolas");
    fixedWidth_.reset(CreateFontIndirectW(&record));
  }
  return fixedWidth_.get();
}

COLORREF ColorOf(SystemColor color) {
  return GetSysColor(ColorIndex(color));
}

HBRUSH BrushOf(SystemColor color) {
  return GetSysColorBrush(ColorIndex(color));
}

}  // namespace torvane
