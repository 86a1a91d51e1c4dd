#include "TestBytes.h"

#include <algorithm>
#include <cstring>

std::uint64_t SeededNumbers::Next() {
  // xorshift64*: short, quick, and good enough to defeat a compressor.
  state_ ^= state_ >> 12U;
  state_ ^= state_ << 25U;
  state_ ^= state_ >> 27U;
  return state_ * 0x2545F4914F6CDD1DU;
}

std::string NoiseBytes(SeededNumbers& numbers, std::size_t length) {
  std::string bytes((length + 7) / 8 * 8, '\0');
  for (std::size_t i = 0; i < bytes.size(); i += 8) {
    const std::uint64_t number = numbers.Next();
    std::memcpy(bytes.data() + i, &number, sizeof number);
  }
  bytes.resize(length);
  return bytes;
}

std::string PayloadBytes(SeededNumbers& numbers, std::size_t length) {
  constexpr std::size_t kReach = 16384;
  constexpr std::size_t kLongestPiece = 32;
  std::string bytes;
  bytes.reserve(length + 2 * kLongestPiece);
  while (bytes.size() < length) {
    bytes += NoiseBytes(numbers, 1 + numbers.Below(kLongestPiece - 8));
    const std::size_t distance = 1 + numbers.Below(std::min(kReach, bytes.size()));
    const std::size_t repeat = std::min(distance, 4 + numbers.Below(kLongestPiece));
    bytes.append(bytes, bytes.size() - distance, repeat);
  }
  bytes.resize(length);
  return bytes;
}
