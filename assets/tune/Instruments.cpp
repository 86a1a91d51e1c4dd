#include "Instruments.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <utility>
#include <vector>

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
/// Samples a second at C-3, the note at which drums are played.
constexpr double kDrumRate = 16574;

using Wave = std::vector<double>;

/// Noise from -1 to 1 that is the same on every machine.
class Noise {
 public:
  explicit Noise(std::uint32_t seed) : state_(seed) {}
  double Next() {
    state_ = state_ * 1664525U + 1013904223U;
    return static_cast<double>(state_ >> 8U) / 8388608.0 - 1;
  }

 private:
  std::uint32_t state_;
};

double Seconds(std::size_t sample) {
  return static_cast<double>(sample) / kDrumRate;
}

/// From 1 at the start of a wave down to 0 at its end, so that no drum ends with a click.
double Fade(std::size_t sample, std::size_t length) {
  const double rest = 1 - static_cast<double>(sample) / static_cast<double>(length);
  return std::min(1.0, rest * 8);
}

/// Scales a wave to the peak that eight bits leave room for.
Wave Loudest(Wave wave) {
  double peak = 0;
  for (const double value : wave) peak = std::max(peak, std::abs(value));
  for (double& value : wave) value *= 0.98 / peak;
  return wave;
}

/// A drum: `make(t)` for each moment t in seconds, faded at its end.
template <typename Make>
Wave Drum(std::size_t length, Make make) {
  Wave wave(length);
  for (std::size_t i = 0; i < length; ++i) wave[i] = make(Seconds(i)) * Fade(i, length);
  return Loudest(std::move(wave));
}

/// Sums sines at the whole multiples of a cycle: `loudness(n, progress)` of the n-th, with the
/// progress through the wave from 0 to 1. Only multiples below half the sample rate sound.
template <typename Loudness>
Wave Sines(std::size_t length, std::size_t cycle, Loudness loudness) {
  Wave wave(length);
  for (std::size_t i = 0; i < length; ++i) {
    const double turn = kTurn * static_cast<double>(i % cycle) / static_cast<double>(cycle);
    const double progress = static_cast<double>(i) / static_cast<double>(length);
    for (std::size_t n = 1; n < cycle / 2; ++n)
      wave[i] +=
          loudness(static_cast<double>(n), progress) * std::sin(static_cast<double>(n) * turn);
  }
  return Loudest(std::move(wave));
}

/// A low-pass filter with its corner at the `corner`-th multiple.
double Below(double corner, double n) {
  return 1 / (1 + std::pow(n / corner, 4));
}

Wave Kick() {
  return Drum(2600, [phase = 0.0](double t) mutable {
    phase += (46 + 190 * std::exp(-t * 38)) / kDrumRate;
    return std::tanh(1.8 * std::sin(kTurn * phase) * std::exp(-t * 13)) + 0.25 * std::exp(-t * 900);
  });
}

Wave Snare() {
  return Drum(3400, [noise = Noise(7), soft = 0.0](double t) mutable {
    soft += 0.72 * (noise.Next() - soft);
    const double skin = std::sin(kTurn * (182 * t + 1.1 * (1 - std::exp(-t * 60))));
    return 0.75 * skin * std::exp(-t * 26) + 0.8 * soft * std::exp(-t * 19);
  });
}

Wave Clap() {
  return Drum(3000, [noise = Noise(11), low = 0.0, band = 0.0](double t) mutable {
    // Noise around 1,200 Hz in four hands' strokes, the last of which rings.
    const double reach = 0.42;
    low += reach * band;
    band += reach * (noise.Next() - low - 0.55 * band);
    const double stroke = t < 0.036 ? std::fmod(t, 0.012) : t - 0.036;
    return band * std::exp(-stroke * (t < 0.036 ? 190 : 26));
  });
}

/// A hat: noise without its low part, with a few metallic tones in it.
Wave Hat(std::size_t length, double decay) {
  return Drum(length, [decay, noise = Noise(3), before = 0.0](double t) mutable {
    const double now = noise.Next();
    const double high = now - std::exchange(before, now);
    const double metal = std::sin(kTurn * 6330 * t) * std::sin(kTurn * 4127 * t);
    return (high + 0.6 * metal) * std::exp(-t * decay);
  });
}

Wave Cowbell() {
  return Drum(1800, [](double t) {
    const auto square = [t](double pitch) { return std::tanh(4 * std::sin(kTurn * pitch * t)); };
    return (square(547) + square(811)) * (0.6 * std::exp(-t * 70) + 0.4 * std::exp(-t * 22));
  });
}

Wave Tom() {
  return Drum(2400, [phase = 0.0](double t) mutable {
    phase += (118 + 90 * std::exp(-t * 30)) / kDrumRate;
    return std::sin(kTurn * phase) * std::exp(-t * 15);
  });
}

/// A record moved to and fro under its needle: a rough wave, read at a speed that swings.
Wave Scratch() {
  return Drum(3000, [noise = Noise(23)](double t) mutable {
    const double place = 0.55 * (1 - std::cos(kTurn * t * 7.3)) / 7.3;
    const double speed = std::abs(std::sin(kTurn * t * 7.3));
    const double groove =
        std::tanh(3 * std::sin(kTurn * 610 * place) + 2 * std::sin(kTurn * 1470 * place));
    return speed * (groove + 0.5 * noise.Next());
  });
}

/// A struck bell: sines that aren't multiples of one another, and end one by one.
Wave Bell() {
  constexpr double cycle = 32;
  Wave wave(5600);
  for (std::size_t i = 0; i < wave.size(); ++i) {
    const double turns = static_cast<double>(i) / cycle;
    const double age = static_cast<double>(i) / 1000;
    const auto partial = [&](double pitch, double loud, double decay) {
      return loud * std::sin(kTurn * pitch * turns) * std::exp(-age * decay);
    };
    wave[i] = partial(1, 1, 0.55) + partial(2.003, 0.35, 0.9) + partial(4.02, 0.28, 1.9) +
              partial(6.79, 0.14, 4.5);
    wave[i] *= Fade(i, wave.size());
  }
  return Loudest(std::move(wave));
}

/// A bass whose filter closes after the stroke; it stays on the last of its 25 cycles.
Wave Bass() {
  return Sines(3200, 128, [](double n, double progress) {
    const double corner = 3.2 + 19 * std::exp(-progress * 5);
    const double sub = n == 1 ? 0.5 : 0.0;
    return (sub + Below(corner, n) / n) * (0.72 + 0.28 * std::exp(-progress * 6));
  });
}

/// A pulse whose width swings once through the wave.
Wave Lead() {
  return Sines(4096, 32, [](double n, double progress) {
    const double width = 0.32 + 0.14 * std::sin(kTurn * progress);
    return std::sin(n * std::numbers::pi * width) / n * Below(11, n);
  });
}

/// Nearly a sine, that swells in sixteen cycles and stays.
Wave Whistle() {
  return Sines(544, 32, [](double n, double progress) {
    if (n > 3) return 0.0;
    const double swell = std::min(1.0, progress * 544 / 512);
    return (n == 1 ? 1.0 : 0.16 / n) * swell;
  });
}

/// A plucked pulse of a quarter's width, that ends on a soft cycle.
Wave Pluck() {
  return Sines(3104, 32, [](double n, double progress) {
    const double corner = 3 + 11 * std::exp(-progress * 4);
    return std::sin(n * std::numbers::pi / 4) / n * Below(corner, n) *
           (0.3 + 0.7 * std::exp(-progress * 3.5));
  });
}

/// A chord of three notes, each of two strings a little apart. `second` and `third` are the
/// cycles of the upper notes within the wave, in which the root has 64: whole numbers, so that
/// it repeats without a seam. Between two whole numbers both strings share the pitch.
Wave Pad(double second, double third) {
  constexpr std::size_t length = 4096;
  Wave wave(length);
  double phase = 0.1;
  for (const double cycles : {64.0, second, third}) {
    for (const double string : {std::floor(cycles), std::ceil(cycles + 0.01)}) {
      phase += 0.37;
      const double loud = string == cycles ? 1 : 0.6;
      for (int multiple = 1; multiple <= 8; ++multiple) {
        const double n = multiple;
        for (std::size_t i = 0; i < length; ++i) {
          const double turns = string * n * static_cast<double>(i) / length + phase * n;
          wave[i] += loud / n * Below(3.5, n) * std::sin(kTurn * turns);
        }
      }
    }
  }
  return Loudest(std::move(wave));
}

}  // namespace

std::vector<Instrument> MakeInstruments() {
  return {
      // name, wave, loop: start and length, volume
      {"kick", Kick(), 0, 0, 58},
      {"snare", Snare(), 0, 0, 52},
      {"clap", Clap(), 0, 0, 46},
      {"hat", Hat(900, 75), 0, 0, 24},
      {"open", Hat(3600, 15), 0, 0, 22},
      {"cowbell", Cowbell(), 0, 0, 26},
      {"tom", Tom(), 0, 0, 56},
      {"scratch", Scratch(), 0, 0, 34},
      {"bell", Bell(), 0, 0, 54},
      {"bass", Bass(), 3072, 128, 50},
      {"lead", Lead(), 0, 4096, 36},
      {"whistle", Whistle(), 512, 32, 28},
      {"pluck", Pluck(), 3072, 32, 30},
      {"minor", Pad(76, 96), 0, 4096, 34},
      {"major", Pad(80.5, 96), 0, 4096, 34},
      {"diminished", Pad(76, 90.5), 0, 4096, 34},
  };
}

Instrument MakeCrash(std::size_t length) {
  Wave wave = Drum(length, [noise = Noise(31), before = 0.0](double t) mutable {
    const double now = noise.Next();
    const double high = now - 0.8 * std::exchange(before, now);
    const double metal = std::sin(kTurn * 3411 * t) * std::sin(kTurn * 5273 * t);
    return (high + 0.5 * metal) * (0.35 * std::exp(-t * 30) + 0.65 * std::exp(-t * 6));
  });
  return {"crash", std::move(wave), 0, 0, 34};
}
