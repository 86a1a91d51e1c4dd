#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A four-channel tune as the score says it and the module stores it.
inline constexpr std::size_t kRows = 64;
inline constexpr std::size_t kChannels = 4;
/// Notes C-1 to B-3, numbered from 0.
inline constexpr int kNotes = 36;
inline constexpr int kNoNote = -1;

/// What one channel does in one row: all parts are optional.
struct Cell {
  int note = kNoNote;
  int instrument = 0;        // 1-based; 0 for none
  std::uint16_t effect = 0;  // three hexadecimal digits: command and two parameters; 0 for none
};

using Pattern = std::array<std::array<Cell, kChannels>, kRows>;

/// An instrument's wave and what the module says of it. Lengths in samples, all even.
struct Instrument {
  std::string name;
  std::vector<double> wave;    // from -1 to 1
  std::size_t loopStart = 0;   // of the part that repeats ...
  std::size_t loopLength = 0;  // ... and how long it is; 0 for a wave that ends
  int volume = 64;             // 0 to 64
};

struct Song {
  std::string title;
  std::vector<Instrument> instruments;
  std::vector<std::string> texts;  // written into the names of unused instruments
  std::vector<Pattern> patterns;
  std::vector<std::size_t> order;  // indexes of patterns
};
