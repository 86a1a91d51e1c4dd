#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Where the main window stood when it was left, as `kelvo.ini` keeps it: left, top, width and
/// height in pixels, joined by commas.
struct WindowPosition {
  std::int16_t left;
  std::int16_t top;
  std::int16_t width;
  std::int16_t height;

  bool operator==(const WindowPosition&) const = default;

  /// Reads the first four parts of the text. A width below 480 and a height below 250 are raised
  /// to that; left and top are taken as they are. Fails if a part is missing or isn't a 16-bit
  /// whole number.
  static WindowPosition Parse(std::string_view text);
  /// The text that `Parse` gives back.
  [[nodiscard]] std::string Text() const;
};
