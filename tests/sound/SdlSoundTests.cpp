#include <cmath>

#include "Player.h"

namespace {

constexpr std::size_t kBuffer = 1024;       // frames
constexpr std::size_t kClick = 746;         // frames: two for each sample
constexpr std::size_t kHeardOfClick = 416;  // frames: then it has faded out

TEST(SdlSound, TickingPlaysFromTheStartAndUntickingStops) {
  Player player;
  player->PlayMOD();
  player.PlayFrames(kRate);
  player->StopMOD();
  const Samples first = player.Played();
  EXPECT_FALSE(IsSilence(first));
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  EXPECT_EQ(player.Stop().size(), first.size()) << "sound after the stop";

  player->PlayMOD();
  player.PlayFrames(kRate);
  const Samples before = Sounding(first), again = Sounding(player.Stop());
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
  const Samples raw = player.Stop();

  Player quiet;
  quiet->PlayMOD();
  quiet.PlayFrames(kRate * 4);
  const Samples mixed = Sounding(raw), tune = Sounding(quiet.Stop());
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
  for (int i = 0; i < 2; ++i) {
    player->PlayResWave("CLICK");
    player.PlayFrames(1);
    EXPECT_GE(Sounding(player.Stop()).size(), 2 * kHeardOfClick) << "the click was cut off";
  }
}

TEST(SdlSound, WhatCantBePlayedIsSilent) {
  const std::string module(Tune::Module());
  std::string noPatterns = module.substr(0, 1084);
  std::string noise(80000, '\0');
  for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<char>(i * i % 251);
  std::string otherMarker = module, tooLarge = module;
  otherMarker.replace(1080, 4, "MK..");
  tooLarge.resize((4U << 20) + 1);
  const auto expect = [](const std::string& bytes, bool isSilent) {
    Player player;
    player.Folder().Write("music.mod", bytes);
    player->PlayMOD();
    player.PlayFrames(kRate);
    EXPECT_EQ(IsSilence(player.Stop()), isSilent) << bytes.size() << " bytes";
  };
  for (const std::string& broken : {std::string(), std::string("not a tune"), noPatterns, noise,
                                    std::string(5000, '\xFF'), otherMarker, tooLarge}) {
    expect(broken, true);
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
  EXPECT_TRUE(IsSilence(missing.Stop()));
}

TEST(SdlSound, TheTuneKeepsItsLevelsAndBeginsAgainWithoutAClick) {
  constexpr double kTuneSeconds = 170.25;
  Player player;
  player->PlayMOD();
  player.PlayFrames(kRate * 180);
  const Samples samples = Sounding(player.Stop());
  const auto at = [&](double seconds) {
    return samples.begin() + static_cast<std::ptrdiff_t>(seconds * kRate) * 2;
  };
  // A click is a third of full scale. It finds room above the loudest of the tune, or all but.
  EXPECT_LT(Peak(samples.begin(), samples.end()), 32767 - 6000);
  for (int second = 2; second < 160; second += 4) {
    double power = 0;
    for (auto s = at(second); s != at(second + 4); ++s) power += std::pow(*s / 32768.0, 2);
    const double level = 10 * std::log10(power / (4 * kRate * 2));
    EXPECT_GT(level, -27) << "at " << second;
    EXPECT_LT(level, -14) << "at " << second;
  }
  // By the library, an eighth of a second earlier or later.
  const auto again = std::find_if(at(kTuneSeconds - 0.3), at(kTuneSeconds + 0.3),
                                  [](int sample) { return std::abs(sample) > 3000; });
  ASSERT_NE(again, at(kTuneSeconds + 0.3)) << "it doesn't begin again";
  const auto before = [&](int frames) { return again - 2 * frames; };
  int step = 0;
  for (auto s = before(4400); s != before(200); ++s) step = std::max(step, std::abs(*s - *(s + 2)));
  EXPECT_LT(step, 1000);
}

}  // namespace
