#pragma once

#include <cstddef>
#include <functional>
#include <utility>

/// Lets events run now and then in work that is rarely long: it counts the work's steps, and calls
/// back once in a few milliseconds of them.
class EventPacer {
 public:
  explicit EventPacer(std::function<void()> doEvents = {}) : doEvents_(std::move(doEvents)) {}

  /// `steps`: about a nanosecond each.
  void Work(std::size_t steps) {
    done_ += steps;
    if (done_ < kStepsBetweenEvents) return;
    done_ = 0;
    if (doEvents_) doEvents_();
  }

 private:
  static constexpr std::size_t kStepsBetweenEvents = 4'000'000;

  std::function<void()> doEvents_;
  std::size_t done_ = 0;
};
