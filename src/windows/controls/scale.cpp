#include "windows/controls/scale.h"

#include <algorithm>

namespace torvane {
namespace {

/// Of a caption, as much as a mouse takes hold of.
constexpr int kGrip = 96;

PixelRect Common(const PixelRect& a, const PixelRect& b) {
  const int left = std::max(a.left, b.left);
  const int top = std::max(a.top, b.top);
  return {left, top, std::max(0, std::min(a.right(), b.right()) - left),
          std::max(0, std::min(a.bottom(), b.bottom()) - top)};
}

/// How far the middle of a window lies outside a screen.
double Distance(const PixelRect& window, const PixelRect& screen) {
  const double x = window.left + window.width / 2.0;
  const double y = window.top + window.height / 2.0;
  const double beside = x - std::clamp<double>(x, screen.left, screen.right());
  const double above = y - std::clamp<double>(y, screen.top, screen.bottom());
  return std::hypot(beside, above);
}

}  // namespace

PixelRect InSight(const PixelRect& wanted, int caption, const std::vector<PixelRect>& screens) {
  if (screens.empty()) return wanted;
  PixelRect all = screens.front();
  for (const PixelRect& screen : screens) {
    const int left = std::min(all.left, screen.left);
    const int top = std::min(all.top, screen.top);
    all = {left, top, std::max(all.right(), screen.right()) - left,
           std::max(all.bottom(), screen.bottom()) - top};
  }
  const PixelRect& nearest = *std::ranges::min_element(
      screens, {}, [&](const PixelRect& screen) { return Distance(wanted, screen); });
  PixelRect seen = wanted;
  if (seen.width > all.width) seen.width = nearest.width;
  if (seen.height > all.height) seen.height = nearest.height;

  const PixelRect grip{seen.left, seen.top, seen.width, caption};
  const bool reached = std::ranges::any_of(screens, [&](const PixelRect& screen) {
    const PixelRect visible = Common(grip, screen);
    return visible.height == caption && visible.width >= std::min(seen.width, kGrip);
  });
  const bool whole = seen.width == wanted.width && seen.height == wanted.height;
  if (reached && whole) return seen;
  seen.left = std::max(std::min(seen.left, nearest.right() - seen.width), nearest.left);
  seen.top = std::max(std::min(seen.top, nearest.bottom() - seen.height), nearest.top);
  return seen;
}

}  // namespace torvane
