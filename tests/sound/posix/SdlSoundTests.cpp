#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <malloc.h>

#include "platform/FileSystem.h"
#include "sound/Sound.h"
#include "sound/SoundLibrary.h"
#include "support/EnvironmentVariable.h"
#include "support/TempFolder.h"
#include "tune/Tune.h"

namespace {

using std::chrono::milliseconds;

constexpr std::size_t kRate = 44100;
constexpr std::size_t kFrame = 4;           // bytes: two channels of 16 bits
constexpr std::size_t kBuffer = 1024;       // frames
constexpr std::size_t kClick = 746;         // frames: two for each sample
constexpr std::size_t kHeardOfClick = 416;  // frames: then it has faded out

/// What the device got, channel by channel in turns.
using Samples = std::vector<std::int16_t>;

/// The program's sound on a device that is a file, and takes a buffer each `delay` milliseconds.
class Player {
 public:
  explicit Player(int delay = 0, const std::string& driver = "disk")
      : driver_("SDL_AUDIODRIVER", driver),
        file_("SDL_DISKAUDIOFILE", folder_.At("device").string()),
        delay_("SDL_DISKAUDIODELAY", std::to_string(delay)) {
    folder_.Write("music.mod", Tune::Module());
  }

  [[nodiscard]] const TempFolder& Folder() const { return folder_; }
  Sound& operator*() { return sound_; }
  Sound* operator->() { return &sound_; }

  [[nodiscard]] std::size_t FramesPlayed() const {
    std::error_code missing;
    const auto size = std::filesystem::file_size(folder_.At("device"), missing);
    return missing ? 0 : size / kFrame;
  }
  /// Waits until the device got that many frames more.
  void PlayFrames(std::size_t frames) const {
    const std::size_t wanted = FramesPlayed() + frames;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (FramesPlayed() < wanted && std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(milliseconds(1));
    ASSERT_GE(FramesPlayed(), wanted) << "the device got no more";
  }
  [[nodiscard]] Samples Played() const {
    const std::string bytes = folder_.Read("device");
    Samples samples(bytes.size() / 2);
    std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    return samples;
  }

 private:
  TempFolder folder_;
  EnvironmentVariable driver_, file_, delay_;
  FileSystem files_;
  std::unique_ptr<SoundLibrary> library_ = MakeSoundLibrary(files_);
  Sound sound_{*library_, folder_.Dos(), {[] { return true; }, [] { return true; }}};
};

bool IsSilence(const Samples& samples) {
  return std::all_of(samples.begin(), samples.end(), [](int sample) { return sample == 0; });
}

int Peak(Samples::const_iterator begin, Samples::const_iterator end) {
  int peak = 0;
  for (auto at = begin; at != end; ++at) peak = std::max(peak, std::abs(int{*at}));
  return peak;
}

/// Without the silence before the first sound and after the last.
Samples Sounding(const Samples& samples) {
  const auto isSound = [](int sample) { return sample != 0; };
  const auto first = std::find_if(samples.begin(), samples.end(), isSound);
  const auto last = std::find_if(samples.rbegin(), std::make_reverse_iterator(first), isSound);
  const auto frame = std::distance(samples.begin(), first) / 2 * 2;
  return {samples.begin() + frame, last.base()};
}

std::size_t CountOf(const char* folder) {
  const auto entries = std::filesystem::directory_iterator(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

TEST(SdlSound, TickingPlaysFromTheStartAndUntickingStops) {
  Player player;
  player->PlayMOD();
  player.PlayFrames(kRate);
  player->StopMOD();
  const Samples first = player.Played();
  EXPECT_FALSE(IsSilence(first));
  std::this_thread::sleep_for(milliseconds(30));
  EXPECT_EQ(player.Played().size(), first.size()) << "sound after the stop";

  player->PlayMOD();
  player.PlayFrames(kRate);
  player->StopMOD();
  const Samples before = Sounding(first), again = Sounding(player.Played());
  const auto shared = static_cast<std::ptrdiff_t>(std::min(before.size(), again.size()));
  ASSERT_GT(shared, 2000);
  EXPECT_TRUE(std::equal(before.begin(), before.begin() + shared, again.begin()));
}

TEST(SdlSound, AClickIsMixedIntoTheTuneWhenItIsPressed) {
  Player player(5);
  player->PlayMOD();
  player.PlayFrames(kRate);
  const std::size_t pressed = player.FramesPlayed();
  player->PlayResWave("CLICK");
  player.PlayFrames(kRate);
  player->StopMOD();
  const Samples raw = player.Played();

  Player quiet;
  quiet->PlayMOD();
  quiet.PlayFrames(kRate * 4);
  quiet->StopMOD();
  const Samples mixed = Sounding(raw), tune = Sounding(quiet.Played());
  ASSERT_GE(tune.size(), mixed.size());

  Samples rest(mixed.size());
  std::transform(mixed.begin(), mixed.end(), tune.begin(), rest.begin(),
                 [](int both, int one) { return static_cast<std::int16_t>(both - one); });
  const auto isSound = [](int sample) { return sample != 0; };
  const auto from = std::find_if(rest.begin(), rest.end(), isSound);
  const auto to = std::find_if(rest.rbegin(), rest.rend(), isSound).base();
  ASSERT_LT(from, to) << "no click";
  const auto start = static_cast<std::size_t>(std::distance(rest.begin(), from)) / 2;
  const auto firstSound = std::find_if(raw.begin(), raw.end(), isSound);
  const std::size_t heard =
      start + static_cast<std::size_t>(std::distance(raw.begin(), firstSound)) / 2;
  EXPECT_GE(heard + kBuffer, pressed);
  EXPECT_LE(heard, pressed + 20 * kBuffer);
  EXPECT_LE(std::distance(from, to) / 2, kClick + 2) << "the click, or a damage to the tune";
  EXPECT_GT(Peak(from, to), 5000);
  EXPECT_LT(Peak(from, to), 12000);
}

TEST(SdlSound, AClickSoundsWithoutATuneAndThroughTheStop) {
  Player player(10);
  EXPECT_EQ(player.Folder().Read("device"), "(missing)") << "a device before the first sound";
  std::size_t files = 0;
  // The first time opens for good what SDL keeps.
  for (const bool isFirst : {true, false}) {
    player->PlayResWave("CLICK");
    player->StopMOD();
    EXPECT_GE(Sounding(player.Played()).size(), 2 * kHeardOfClick) << "the click was cut off";
    if (isFirst) files = CountOf("/proc/self/fd");
  }
  EXPECT_EQ(CountOf("/proc/self/fd"), files);
  const std::size_t frames = player.FramesPlayed();
  std::this_thread::sleep_for(milliseconds(100));
  EXPECT_EQ(player.FramesPlayed(), frames) << "the device is still open";
}

TEST(SdlSound, WhatCantBePlayedIsSilent) {
  const std::string module(Tune::Module());
  std::string noPatterns = module.substr(0, 1084);
  std::string noise(80000, '\0');
  for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<char>(i * i % 251);
  for (const std::string& broken :
       {std::string(), std::string("not a tune"), noPatterns, noise, std::string(5000, '\xFF')}) {
    Player player;
    player.Folder().Write("music.mod", broken);
    player->PlayMOD();
    player.PlayFrames(kRate);
    player->StopMOD();
    EXPECT_TRUE(IsSilence(player.Played())) << broken.size() << " bytes";
  }
  // Cut short it may play what there is, and must not do harm.
  for (const std::size_t length : {1100U, 20000U, 79947U}) {
    Player player;
    player.Folder().Write("music.mod", module.substr(0, length));
    player->PlayMOD();
    player.PlayFrames(kRate * 30);
    player->StopMOD();
  }
  Player missing;
  std::filesystem::remove(missing.Folder().At("music.mod"));
  missing->PlayMOD();
  missing.PlayFrames(kRate);
  EXPECT_TRUE(IsSilence(missing.Played()));
}

TEST(SdlSound, NoDeviceIsSilenceAndNoNote) {
  const EnvironmentVariable card("ALSA_CARD", "99");
  for (const char* driver : {"nosuchdriver", "alsa"}) {
    Player player(0, driver);
    testing::internal::CaptureStderr();
    player->PlayMOD();
    player->PlayResWave("CLICK");
    player->StopMOD();
    player->PlayResWave("CLICK");
    player->StopMOD();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << driver;
    EXPECT_EQ(player.FramesPlayed(), 0U);
  }
}

TEST(SdlSound, AHundredStartsAndStopsLeaveNothingBehind) {
  Player player;
  std::size_t files = 0, threads = 0, memory = 0;
  for (int i = 0; i < 100; ++i) {
    if (i == 10) {
      files = CountOf("/proc/self/fd");
      threads = CountOf("/proc/self/task");
      memory = mallinfo2().uordblks;
    }
    player->PlayMOD();
    player->StopMOD();
  }
  EXPECT_EQ(CountOf("/proc/self/fd"), files);
  EXPECT_EQ(CountOf("/proc/self/task"), threads);
  EXPECT_LT(mallinfo2().uordblks, memory + 100000) << "ninety tunes have seven million bytes";
}

TEST(SdlSound, TheTuneKeepsItsLevelsAndBeginsAgainWithoutAClick) {
  constexpr double kTuneSeconds = 170.25;
  Player player;
  player->PlayMOD();
  player.PlayFrames(kRate * 180);
  player->StopMOD();
  const Samples samples = Sounding(player.Played());
  const auto at = [&](double seconds) {
    return samples.begin() + static_cast<std::ptrdiff_t>(seconds * kRate) * 2;
  };
  // A click is a third of full scale, and finds room above the loudest of the tune.
  EXPECT_LT(Peak(samples.begin(), samples.end()), 32767 - 10000);
  for (int second = 2; second < 160; second += 4) {
    double power = 0;
    for (auto s = at(second); s != at(second + 4); ++s) power += std::pow(*s / 32768.0, 2);
    const double level = 10 * std::log10(power / (4 * kRate * 2));
    EXPECT_GT(level, -27) << "at " << second;
    EXPECT_LT(level, -14) << "at " << second;
  }
  const auto seam = at(kTuneSeconds - 0.1), end = at(kTuneSeconds - 0.002);
  int step = 0;
  for (auto s = seam; s != end; ++s) step = std::max(step, std::abs(*s - *(s + 2)));
  EXPECT_LT(step, 1000);
  EXPECT_GT(Peak(at(kTuneSeconds), at(kTuneSeconds + 1)), 3000) << "it doesn't begin again";
}

}  // namespace
