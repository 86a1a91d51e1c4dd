#include <algorithm>
#include <cstddef>
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

TEST(Tune, PlaysEveryPattern) {
  const std::string_view module = Tune::Module();
  std::set<std::size_t> played;
  for (std::size_t i = 0; i < Byte(module, 950); ++i) played.insert(Byte(module, 952 + i));
  EXPECT_EQ(played.size(), PatternCount(module));
  EXPECT_GE(played.size(), 8U);
}

}  // namespace
