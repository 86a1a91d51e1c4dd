#pragma once

#include <cmath>

/// Design lengths are in twips, fifteen to a pixel. The toolkit's pixels are device-independent:
/// its scale factor serves high-density screens.
inline constexpr int kTwipsPerPixel = 15;

/// The nearest whole number, halves to the even one: the rule for every length that comes out
/// with a fraction.
inline int RoundToEven(double value) {
  return static_cast<int>(std::nearbyint(value));
}

/// Twips as whole pixels.
inline int ToPixels(double twips) {
  return RoundToEven(twips / kTwipsPerPixel);
}

/// Pixels as twips.
inline int ToTwips(int pixels) {
  return pixels * kTwipsPerPixel;
}
