#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#define SDL_MAIN_HANDLED
#include <SDL.h>
#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "sound/Sound.h"
#include "sound/SoundLibrary.h"
#include "support/EnvironmentVariable.h"
#include "support/TempFolder.h"
#include "tune/Tune.h"

inline constexpr std::size_t kRate = 44100;
inline constexpr std::size_t kFrame = 4;  // bytes: two channels of 16 bits

/// What the device got, channel by channel in turns.
using Samples = std::vector<std::int16_t>;

/// The program's sound on a device that is a file, and takes a buffer each `delay` milliseconds.
class Player {
 public:
  explicit Player(int delay = 0, const std::string& driver = "disk")
      : driver_("SDL_AUDIODRIVER", driver),
        file_("SDL_DISKAUDIOFILE", folder_.At("device").string()),
        // SDL for Windows keeps the last variable that it has read, and takes it for the file's
        // name: a name that begins with the delay does for either system.
        delay_("SDL_DISKAUDIODELAY",
               std::to_string(delay) + "/../" + relative(folder_.At("device")).string()) {
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
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ASSERT_GE(FramesPlayed(), wanted) << "the device got no more";
  }
  /// Stops, and takes away what the device got since it was opened.
  Samples Stop() {
    sound_.StopMOD();
    Samples played = Played();
    std::filesystem::remove(folder_.At("device"));
    return played;
  }
  /// What the device got until it was closed, which a stop doesn't wait for.
  [[nodiscard]] Samples Played() const {
    for (int i = 0; i < 5000 && SDL_WasInit(SDL_INIT_AUDIO) != 0; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
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

inline bool IsSilence(const Samples& samples) {
  return std::all_of(samples.begin(), samples.end(), [](int sample) { return sample == 0; });
}

inline int Peak(Samples::const_iterator begin, Samples::const_iterator end) {
  int peak = 0;
  for (auto at = begin; at != end; ++at) peak = std::max(peak, std::abs(int{*at}));
  return peak;
}

/// Without the silence before the first sound and after the last.
inline Samples Sounding(const Samples& samples) {
  const auto isSound = [](int sample) { return sample != 0; };
  const auto first = std::find_if(samples.begin(), samples.end(), isSound);
  const auto last = std::find_if(samples.rbegin(), std::make_reverse_iterator(first), isSound);
  const auto frame = std::distance(samples.begin(), first) / 2 * 2;
  return {samples.begin() + frame, last.base()};
}
