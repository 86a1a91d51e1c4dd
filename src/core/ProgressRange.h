#pragma once

#include <cstdint>

/// The rules by which a progress bar keeps its range and position.
class ProgressRange {
 public:
  /// Sets the top of the range, and the position to 0 without any test of the range.
  void SetMax(std::int32_t max) {
    max_ = max;
    value_ = 0;
  }
  /// Sets the bottom of the range; the position stays.
  void SetMin(std::int32_t min) { min_ = min; }
  /// Sets the position. One above the top is ignored; one below the bottom is a failure.
  void SetValue(std::int32_t value);

  [[nodiscard]] std::int32_t Max() const { return max_; }
  [[nodiscard]] std::int32_t Min() const { return min_; }
  [[nodiscard]] std::int32_t Value() const { return value_; }

 private:
  std::int32_t max_ = 100;
  std::int32_t min_ = 0;
  std::int32_t value_ = 0;
};
