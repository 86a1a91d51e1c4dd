// The wave file, numbers with the low byte first:
//
//   offset  0   4  "RIFF"      4   4  bytes that follow
//           8   4  "WAVE"
//          12   4  "fmt "     16   4  18, the length of what describes the samples
//          20   2  1 (PCM)    22   2  channels, 1
//          24   4  samples a second   28   4  bytes a second
//          32   2  bytes a sample, 1  34   2  bits a sample, 8
//          36   2  0, nothing more to describe
//          38   4  "fact"     42   4  4    46   4  number of samples
//          50   4  "data"     54   4  number of samples
//          58 373  samples; 128 is silence
//         431   1  0, since a part has an even length
#include "Click.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace {

constexpr std::size_t kSamples = 373;
constexpr std::size_t kRate = 22050;

void Put(std::string& out, std::size_t number, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>((number >> (8 * i)) & 0xFFU);
}

/// A tap on wood: two tones that aren't in tune, gone within a few thousandths of a second.
double Tap(double seconds) {
  const double tone = 2 * std::numbers::pi * seconds;
  return 0.6 * std::sin(tone * 1840) * std::exp(-seconds * 420) +
         0.4 * std::sin(tone * 4310) * std::exp(-seconds * 900);
}

}  // namespace

std::string MakeClick() {
  std::string wave = "RIFF";
  Put(wave, 50 + kSamples + 1, 4);
  wave += "WAVEfmt ";
  Put(wave, 18, 4);
  Put(wave, 1, 2);
  Put(wave, 1, 2);
  Put(wave, kRate, 4);
  Put(wave, kRate, 4);
  Put(wave, 1, 2);
  Put(wave, 8, 2);
  Put(wave, 0, 2);
  wave += "fact";
  Put(wave, 4, 4);
  Put(wave, kSamples, 4);
  wave += "data";
  Put(wave, kSamples, 4);
  for (std::size_t i = 0; i < kSamples; ++i) {
    const double value = Tap(static_cast<double>(i) / static_cast<double>(kRate));
    Put(wave, static_cast<std::size_t>(std::lround(128 + 48 * value)), 1);
  }
  Put(wave, 0, 1);
  return wave;
}
