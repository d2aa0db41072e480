// Lengths on a screen: twips, pixels, and what lies between the two.
#pragma once

#include <cmath>
#include <compare>
#include <vector>

namespace torvane {

/// A length on the screen, 1440 to the inch. Forms measure themselves in twips, their controls are
/// in pixels.
struct Twips {
  double count = 0;
  auto operator<=>(const Twips&) const = default;  // NOLINT(modernize-use-nullptr): a false alarm
};

/// A place in the client area of the form, or of a form on the screen, in pixels.
struct PixelRect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  int right() const { return left + width; }
  int bottom() const { return top + height; }
  bool operator==(const PixelRect&) const = default;
};

/// A size in pixels.
struct PixelSize {
  int width = 0;
  int height = 0;

  bool operator==(const PixelSize&) const = default;
};

/// Where a window that is to stand at `wanted` can be seen and taken hold of: there, if a good
/// piece of its caption, `caption` pixels high, lies on a screen; else wholly on the nearest
/// screen, as far as it fits. A size beyond all screens together is cut to that screen's. `screens`
/// has what windows may cover of each; there may be none.
PixelRect InSight(const PixelRect& wanted, int caption, const std::vector<PixelRect>& screens);

/// How many pixels of a screen make an inch. What comes out in pixels is rounded once, at the end.
struct Scale {
  static constexpr double kDesignDots = 96;
  double dotsPerInch = kDesignDots;

  /// A fraction on many screens: 7.5 at 192 dots an inch.
  double TwipsPerPixel() const { return 1440 / dotsPerInch; }
  Twips ToTwips(double pixels) const { return {pixels * TwipsPerPixel()}; }
  int ToPixels(Twips length) const {
    return static_cast<int>(std::lround(length.count / TwipsPerPixel()));
  }
  /// Pixels for a length, or a place, that was designed at 96 dots an inch.
  int Design(int length) const {
    return static_cast<int>(std::lround(length * dotsPerInch / kDesignDots));
  }
  PixelRect Design(const PixelRect& place) const {
    return {Design(place.left), Design(place.top), Design(place.width), Design(place.height)};
  }
  bool operator==(const Scale&) const = default;
};

}  // namespace torvane
