// An Amiga module of four channels, numbers of two bytes with the high one first:
//
//   offset    0   20 bytes  title, filled with NULs
//            20   31 × 30   instruments
//           950    1        length of the order
//           951    1        127
//           952  128        order: numbers of patterns
//          1080    4        "M.K."
//          1084    N × 1024 patterns: 64 rows of 4 cells
//          ...              the instruments' waves, 8 bits signed, one after the other
//
// an instrument:
//
//             0   22        name, filled with NULs
//            22    2        length in words
//            24    1        fine tuning, 0
//            25    1        volume, 0 to 64
//            26    2        start of the repeated part in words
//            28    2        its length in words; 1 for none
//
// and a cell, with i the instrument's number, p the note's period, e the effect:
//
//   iiii pppp  pppp pppp  iiii eeee  eeee eeee      high digit of i first, low digit third
#include "Module.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace {

constexpr std::size_t kInstruments = 31;
constexpr std::size_t kOrderLength = 128;
constexpr std::size_t kHeadSize = 1084;
constexpr std::size_t kPatternSize = kRows * kChannels * 4;
constexpr std::size_t kMostPatterns = 64;
constexpr std::size_t kMostSamples = std::size_t{0xFFFF} * 2;

/// Periods of the Amiga's sound chip, C-1 to B-3.
constexpr std::array<unsigned, kNotes> kPeriods{
    856, 808, 762, 720, 678, 640, 604, 570, 538, 508, 480, 453,  //
    428, 404, 381, 360, 339, 320, 302, 285, 269, 254, 240, 226,  //
    214, 202, 190, 180, 170, 160, 151, 143, 135, 127, 120, 113};

void Put(std::string& out, std::size_t number) {
  out += static_cast<char>(number & 0xFFU);
}

void PutWord(std::string& out, std::size_t number) {
  Put(out, number >> 8U);
  Put(out, number);
}

void PutText(std::string& out, const std::string& text, std::size_t length) {
  if (text.size() > length)
    throw std::runtime_error("\"" + text + "\" is longer than " + std::to_string(length));
  out += text + std::string(length - text.size(), '\0');
}

void PutInstrument(std::string& out, const Instrument& instrument) {
  const std::size_t length = instrument.wave.size();
  if (length % 2 != 0 || length > kMostSamples || instrument.loopStart % 2 != 0 ||
      instrument.loopLength % 2 != 0 || instrument.loopStart + instrument.loopLength > length)
    throw std::runtime_error("instrument " + instrument.name +
                             ": lengths that a module can't hold");
  PutText(out, instrument.name, 22);
  PutWord(out, length / 2);
  Put(out, 0);
  Put(out, static_cast<std::size_t>(instrument.volume));
  PutWord(out, instrument.loopStart / 2);
  PutWord(out, instrument.loopLength == 0 ? 1 : instrument.loopLength / 2);
}

void PutCell(std::string& out, const Cell& cell) {
  const auto instrument = static_cast<unsigned>(cell.instrument);
  const unsigned period =
      cell.note == kNoNote ? 0 : kPeriods.at(static_cast<std::size_t>(cell.note));
  Put(out, (instrument & 0xF0U) | (period >> 8U));
  Put(out, period);
  Put(out, ((instrument & 0x0FU) << 4U) | (static_cast<unsigned>(cell.effect) >> 8U));
  Put(out, cell.effect);
}

/// A wave in whole steps. What rounding loses is carried to the next sample, so that quiet parts
/// keep their shape; the first two samples of a wave that ends are 0, as players rest on them.
void PutWave(std::string& out, const Instrument& instrument) {
  double carried = 0;
  for (std::size_t i = 0; i < instrument.wave.size(); ++i) {
    const double wanted = instrument.wave[i] * 127 + (instrument.loopLength == 0 ? carried : 0);
    const double step = std::clamp(std::round(wanted), -127.0, 127.0);
    carried = std::clamp(wanted - step, -0.5, 0.5);
    const bool rest = instrument.loopLength == 0 && i < 2;
    out += static_cast<char>(static_cast<std::int8_t>(rest ? 0 : step));
  }
}

}  // namespace

std::size_t ModuleSizeWithoutWaves(const Song& song) {
  return kHeadSize + song.patterns.size() * kPatternSize;
}

std::string WriteModule(const Song& song) {
  if (song.instruments.size() + song.texts.size() > kInstruments ||
      song.patterns.size() > kMostPatterns || song.order.size() > kOrderLength)
    throw std::runtime_error("too many instruments, texts, patterns or places in the order");
  std::string out;
  PutText(out, song.title, 20);
  for (const Instrument& instrument : song.instruments) PutInstrument(out, instrument);
  for (std::size_t i = song.instruments.size(); i < kInstruments; ++i) {
    const std::size_t text = i - song.instruments.size();
    PutInstrument(out, {text < song.texts.size() ? song.texts[text] : "", {}, 0, 0, 0});
  }
  Put(out, song.order.size());
  Put(out, 127);
  for (std::size_t i = 0; i < kOrderLength; ++i)
    Put(out, i < song.order.size() ? song.order[i] : 0);
  out += "M.K.";
  for (const Pattern& pattern : song.patterns)
    for (const auto& row : pattern)
      for (const Cell& cell : row) PutCell(out, cell);
  for (const Instrument& instrument : song.instruments) PutWave(out, instrument);
  return out;
}
