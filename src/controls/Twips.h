#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

/// Design lengths are in twips, fifteen to a pixel. The toolkit's pixels are device-independent:
/// its scale factor serves high-density screens.
inline constexpr int kTwipsPerPixel = 15;

/// The nearest whole number, halves to the even one: the rule for every length that comes out
/// with a fraction.
inline int RoundToEven(double value) {
  // A value beyond the range of `int` becomes its nearest end.
  constexpr double kLowest = std::numeric_limits<int>::min();
  constexpr double kHighest = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::nearbyint(value), kLowest, kHighest));
}

/// Twips as whole pixels.
inline int ToPixels(double twips) {
  return RoundToEven(twips / kTwipsPerPixel);
}

/// Pixels as twips.
inline int ToTwips(int pixels) {
  return pixels * kTwipsPerPixel;
}
