#pragma once

#include <functional>
#include <string>

#include "sound/SoundLibrary.h"

/// When clicks are heard: only while both are true.
struct SoundSwitches {
  std::function<bool()> musikTicked;  // whether chkMusik is ticked, asked at each click
  std::function<bool()> windowShown;  // whether the main window is shown
};

/// The program's two sounds, the tune and the click. Nothing here ever fails: without a device, a
/// tune or a library there is silence, of which only developers hear (see `Trapped`).
class Sound {
 public:
  /// `programFolder` is DOS path text. The library must outlive this.
  Sound(SoundLibrary& library, std::string programFolder, SoundSwitches switches);

  /// Starts the tune, music.mod in the program folder, from its start.
  void PlayMOD();
  /// Stops the tune and the library. Harmless when nothing plays or has ever played.
  void StopMOD();
  /// Plays the wave `name`, which is turned to upper case in place, if sound is on. There is one:
  /// "CLICK". Other names are silent.
  void PlayResWave(std::string& name);
  void PlayResWave(std::string&& name) { PlayResWave(name); }

 private:
  SoundLibrary& library_;
  std::string programFolder_;
  SoundSwitches switches_;
  Song SongHandle = 0;  // 0 until the first start; a stop leaves it
};
