#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tune/Tune.h"

namespace {

constexpr std::size_t kHead = 1084;
constexpr std::size_t kInstruments = 31;

std::size_t Byte(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes.at(at));
}

std::size_t Word(std::string_view bytes, std::size_t at) {
  return Byte(bytes, at) * 256 + Byte(bytes, at + 1);
}

std::size_t PatternCount(std::string_view module) {
  std::size_t highest = 0;
  for (std::size_t i = 0; i < 128; ++i) highest = std::max(highest, Byte(module, 952 + i));
  return highest + 1;
}

struct StoredCell {
  std::size_t instrument, period, command, parameter;
};

StoredCell CellAt(std::string_view module, std::size_t pattern, std::size_t row,
                  std::size_t channel) {
  const std::size_t at = kHead + pattern * 1024 + row * 16 + channel * 4;
  const std::size_t first = Byte(module, at), third = Byte(module, at + 2);
  return {first / 16 * 16 + third / 16, first % 16 * 256 + Byte(module, at + 1), third % 16,
          Byte(module, at + 3)};
}

/// Seconds that the module plays until it begins again.
double Seconds(std::string_view module) {
  double seconds = 0, ticks = 6, tempo = 125;
  for (std::size_t place = 0; place < Byte(module, 950); ++place) {
    bool ended = false;
    for (std::size_t row = 0; row < 64 && !ended; ++row) {
      for (std::size_t channel = 0; channel < 4; ++channel) {
        const StoredCell cell = CellAt(module, Byte(module, 952 + place), row, channel);
        if (cell.command == 0xD) ended = true;
        EXPECT_NE(cell.command, 0xBU) << "a jump";
        if (cell.command == 0xF)
          (cell.parameter < 32 ? ticks : tempo) = static_cast<double>(cell.parameter);
      }
      seconds += ticks * 2.5 / tempo;
    }
  }
  return seconds;
}

TEST(Tune, IsAModuleWhosePartsFillItExactly) {
  const std::string_view module = Tune::Module();
  ASSERT_EQ(module.size(), 79948U);
  EXPECT_EQ(module.substr(1080, 4), "M.K.");
  std::size_t end = kHead + PatternCount(module) * 1024;
  for (std::size_t i = 0; i < kInstruments; ++i) {
    const std::size_t at = 20 + i * 30;
    const std::size_t length = Word(module, at + 22) * 2;
    const std::size_t loopStart = Word(module, at + 26) * 2, loopLength = Word(module, at + 28) * 2;
    EXPECT_LE(Byte(module, at + 25), 64U) << "volume of " << i + 1;
    if (loopLength > 2) {
      EXPECT_LE(loopStart + loopLength, length) << "loop of " << i + 1;
    } else if (length > 0) {
      EXPECT_EQ(Word(module, end), 0U) << "players rest on the first two samples of " << i + 1;
    }
    end += length;
  }
  EXPECT_EQ(end, module.size());
}

TEST(Tune, UsesOnlyNotesAndInstrumentsThatThereAre) {
  const std::string_view module = Tune::Module();
  std::set<std::size_t> instruments, commands;
  for (std::size_t pattern = 0; pattern < PatternCount(module); ++pattern)
    for (std::size_t row = 0; row < 64; ++row)
      for (std::size_t channel = 0; channel < 4; ++channel) {
        const StoredCell cell = CellAt(module, pattern, row, channel);
        if (cell.period != 0) {
          EXPECT_TRUE(cell.period >= 113 && cell.period <= 856) << cell.period;
          instruments.insert(cell.instrument);
        }
        if (cell.command != 0 || cell.parameter != 0) commands.insert(cell.command);
      }
  for (const std::size_t instrument : instruments) {
    ASSERT_TRUE(instrument >= 1 && instrument <= kInstruments);
    EXPECT_GT(Word(module, 20 + (instrument - 1) * 30 + 22), 1U) << instrument << " has no wave";
  }
  EXPECT_EQ(instruments.size(), 17U) << "an instrument that nothing plays";
  // Arpeggio, portamento, vibrato, fading, volume, break, tempo.
  EXPECT_EQ(commands, (std::set<std::size_t>{0x0, 0x3, 0x4, 0xA, 0xC, 0xD, 0xF}));
}

TEST(Tune, PlaysLongerThanTwoMinutesAndEveryPattern) {
  const std::string_view module = Tune::Module();
  EXPECT_GT(Seconds(module), 120);
  std::set<std::size_t> played;
  for (std::size_t i = 0; i < Byte(module, 950); ++i) played.insert(Byte(module, 952 + i));
  EXPECT_EQ(played.size(), PatternCount(module));
  EXPECT_GE(played.size(), 8U);
}

TEST(Click, IsAWaveOf373SamplesThatBeginsAndEndsInSilence) {
  const std::string_view click = Tune::Click();
  ASSERT_EQ(click.size(), 432U);
  const auto number = [&](std::size_t at) { return Byte(click, at) + Byte(click, at + 1) * 256; };
  EXPECT_EQ(click.substr(0, 4), "RIFF");
  EXPECT_EQ(number(4), 424U);
  EXPECT_EQ(click.substr(8, 8), "WAVEfmt ");
  EXPECT_EQ(number(20), 1U) << "PCM";
  EXPECT_EQ(number(22), 1U) << "channels";
  EXPECT_EQ(number(24), 22050U) << "samples a second";
  EXPECT_EQ(number(34), 8U) << "bits";
  EXPECT_EQ(click.substr(50, 4), "data");
  EXPECT_EQ(number(54), 373U);
  const std::string_view samples = click.substr(58, 373);
  EXPECT_EQ(Byte(samples, 0), 128U);
  EXPECT_EQ(Byte(samples, 372), 128U);
  EXPECT_GT(std::abs(static_cast<int>(Byte(samples, 5)) - 128), 8) << "too soft to be heard";
}

}  // namespace
