#include "windows/win32/drawing.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "windows/win32/screen.h"
#include "windows/win32/shell_images.h"

namespace torvane {
namespace {

constexpr int kShellIconSize = 16;

/// The size to ask of an icon resource so that it is drawn down from a larger picture, not up from
/// a smaller one, which is what the system would take if that is nearer.
int PictureSizeFor(int wanted) {
  for (const int size : {16, 20, 24, 32, 40, 48, 64}) {
    if (size >= wanted) return size;
  }
  return 256;
}

class StepPainter {
 public:
  StepPainter(HDC dc, const DrawingStyle& style, double scale)
      : dc_(dc), style_(style), scale_(scale) {}

  void operator()(const DrawShellIcon& step) const {
    const HIMAGELIST images = ShellImagesFor(scaled(kShellIconSize));
    const UniqueIcon icon(ImageList_GetIcon(images, step.number, ILD_TRANSPARENT));
    drawIcon(icon.get(), {step.left, step.top, kShellIconSize, kShellIconSize});
  }

  void operator()(const DrawResourceIcon& step) const {
    const int size = PictureSizeFor(scaled(step.place.width));
    const UniqueIcon icon(static_cast<HICON>(LoadImageW(ThisModule(), MAKEINTRESOURCEW(step.id),
                                                        IMAGE_ICON, size, size, LR_DEFAULTCOLOR)));
    drawIcon(icon.get(), step.place);
  }

  void operator()(const torvane::DrawCaption& step) const {
    const Selection font(dc_, style_.font);
    SetBkMode(dc_, TRANSPARENT);
    SetTextColor(dc_, ColorOf(style_.foreground));
    TextOutW(dc_, scaled(step.left), scaled(step.top), Wide(step.text),
             static_cast<int>(step.text.size()));
  }

  void operator()(const DrawBox& step) const {
    const Selection brush(dc_, BrushOf(style_.foreground));
    const Selection pen(dc_, GetStockObject(NULL_PEN));
    const int former = SetROP2(dc_, static_cast<int>(style_.mode));
    // A rectangle without a pen leaves out its last column and row.
    Rectangle(dc_, scaled(step.left), scaled(step.top), scaled(step.left + step.width) + 1,
              scaled(step.top + step.height) + 1);
    SetROP2(dc_, former);
  }

 private:
  template <class Number>
  int scaled(Number length) const {
    return static_cast<int>(std::lround(static_cast<double>(length) * scale_));
  }

  void drawIcon(HICON icon, const PixelRect& place) const {
    DrawIconEx(dc_, scaled(place.left), scaled(place.top), icon, scaled(place.width),
               scaled(place.height), 0, nullptr, DI_NORMAL);
  }

  HDC dc_;
  const DrawingStyle& style_;
  double scale_;
};

/// A square bitmap of 32 bits a pixel whose pixels can be read and written.
class PixelBitmap {
 public:
  explicit PixelBitmap(int size) : count_(static_cast<std::size_t>(size) * size) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, size, -size, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    pixels_ = static_cast<std::uint32_t*>(bits);
  }

  HBITMAP get() const { return bitmap_.get(); }
  std::uint32_t* begin() const { return pixels_; }
  std::uint32_t* end() const { return pixels_ ? pixels_ + count_ : nullptr; }

 private:
  std::size_t count_;
  UniqueBitmap bitmap_;
  std::uint32_t* pixels_ = nullptr;
};

void DrawOnGround(const PixelBitmap& bitmap, std::uint32_t ground, const Picture& picture,
                  double scale) {
  std::fill(bitmap.begin(), bitmap.end(), ground);
  const UniqueDc dc(CreateCompatibleDC(nullptr));
  const Selection selected(dc.get(), bitmap.get());
  const DrawingStyle style{.font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT))};
  DrawSteps(dc.get(), picture.steps, style, scale);
  GdiFlush();
}

/// The pixel with its cover, from how it came out on black and on white.
std::uint32_t PixelWithAlpha(std::uint32_t onBlack, std::uint32_t onWhite) {
  const std::uint32_t alpha = 255 - ((onWhite & 0xFFU) - (onBlack & 0xFFU));
  if (alpha == 0 || alpha > 255) return 0;
  std::uint32_t pixel = alpha << 24U;
  for (const unsigned shift : {0U, 8U, 16U}) {
    const std::uint32_t channel = (onBlack >> shift) & 0xFFU;
    pixel |= std::min(channel * 255 / alpha, std::uint32_t{255}) << shift;
  }
  return pixel;
}

}  // namespace

void DrawSteps(HDC dc, const std::vector<DrawStep>& steps, const DrawingStyle& style,
               double scale) {
  const StepPainter painter(dc, style, scale);
  for (const DrawStep& step : steps) std::visit(painter, step);
}

// GDI keeps no account of what it covers. A drawing made on black and again on white tells: the
// less the two differ, the more of the ground is covered.
UniqueIcon IconOf(const Picture& picture, int size) {
  const double scale = static_cast<double>(size) / std::max(picture.width, 1);
  const PixelBitmap onBlack(size);
  const PixelBitmap onWhite(size);
  DrawOnGround(onBlack, 0x00000000, picture, scale);
  DrawOnGround(onWhite, 0x00FFFFFF, picture, scale);
  std::transform(onBlack.begin(), onBlack.end(), onWhite.begin(), onBlack.begin(), PixelWithAlpha);

  const std::vector<std::uint8_t> nothingMasked(static_cast<std::size_t>(size) * size);
  const UniqueBitmap mask(CreateBitmap(size, size, 1, 1, nothingMasked.data()));
  ICONINFO info{TRUE, 0, 0, mask.get(), onBlack.get()};
  return UniqueIcon(CreateIconIndirect(&info));
}

}  // namespace torvane
