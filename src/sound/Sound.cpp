#include "sound/Sound.h"

#include <utility>

#include "core/basDebugLog.h"
#include "platform/DosPath.h"
#include "tune/Tune.h"

namespace {

constexpr int kMixRate = 44100;
constexpr int kSoftwareChannels = 32;

}  // namespace

Sound::Sound(SoundLibrary& library, std::string programFolder, SoundSwitches switches)
    : library_(library), programFolder_(std::move(programFolder)), switches_(std::move(switches)) {}

void Sound::PlayMOD() {
  Trapped("basMain.PlayMOD", [&] {
    library_.Init(kMixRate, kSoftwareChannels);
    SongHandle = library_.LoadSong(DosPath::Join(programFolder_, "music.mod"));
    library_.PlaySong(SongHandle);
  });
}

void Sound::StopMOD() {
  Trapped("basMain.StopMOD", [&] {
    library_.StopSong(SongHandle);
    library_.Close();
  });
}

void Sound::PlayResWave(std::string& name) {
  Trapped("basMain.PlayResWave", [&] {
    if (!switches_.musikTicked() || !switches_.windowShown()) return;
    for (char& letter : name)
      if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    if (name == "CLICK") library_.PlayWave(Tune::Click());
  });
}
