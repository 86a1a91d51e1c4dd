#include "core/ProgressRange.h"

#include "platform/Failure.h"

void ProgressRange::SetValue(std::int32_t value) {
  if (value > max_) return;
  if (value < min_) Fail("progress ", value, " lies below the bottom of the range, ", min_);
  value_ = value;
}
