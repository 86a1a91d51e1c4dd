#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Numbers that are the same on every machine and in every run.
class SeededNumbers {
 public:
  explicit SeededNumbers(std::uint64_t seed) : state_(seed * 2 + 1) {}

  std::uint64_t Next();
  /// A number from 0 to `end` - 1.
  std::size_t Below(std::size_t end) { return static_cast<std::size_t>(Next() % end); }

 private:
  std::uint64_t state_;
};

/// Bytes that don't compress.
std::string NoiseBytes(SeededNumbers& numbers, std::size_t length);

/// Bytes that zlib brings to about half: noise, and repeats of what stood shortly before.
std::string PayloadBytes(SeededNumbers& numbers, std::size_t length);
