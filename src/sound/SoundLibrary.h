#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

class FileSystem;

/// A loaded tune; 0 is none. A handle of a tune that is gone is no tune either.
using Song = std::uint32_t;

/// The library that the program plays with: five calls for the tune, one for the click. Devices
/// and sounds run beside the program, which waits for none but at its end. What can't be done at
/// once is a `Failure`; what fails later, as a device that can't be opened, is logged, and silent.
/// For the window thread only.
class SoundLibrary {
 public:
  SoundLibrary() = default;
  SoundLibrary(SoundLibrary&&) = delete;
  SoundLibrary(const SoundLibrary&) = delete;
  SoundLibrary& operator=(SoundLibrary&&) = delete;
  SoundLibrary& operator=(const SoundLibrary&) = delete;
  /// Closes the library, and waits for it: half a second at most, and not for a device that is
  /// still being opened.
  virtual ~SoundLibrary() = default;

  /// Makes the library ready; does nothing if it is. `mixRate` in samples a second. A device that
  /// can't be had is asked for once until `Close`.
  virtual void Init(int mixRate, int channels) = 0;
  /// Loads a tracker module anew from `path`, DOS path text: one of 4 MiB at most, with a module's
  /// marker. The tune before it ends.
  virtual Song LoadSong(std::string_view path) = 0;
  /// Plays a tune from its start, and again from there whenever it has come to its end.
  virtual void PlaySong(Song song) = 0;
  virtual void StopSong(Song song) = 0;
  /// Lets go of tunes and device, without making the caller wait. A click that still sounds isn't
  /// cut off.
  virtual void Close() = 0;

  /// Plays a wave file once, over the tune; a wave that still sounds gives way. `wave` must
  /// stay for as long as the program runs. Plays without `Init` as well.
  virtual void PlayWave(std::string_view wave) = 0;
};

/// The library that this program was built with. Does nothing before its first call.
std::unique_ptr<SoundLibrary> MakeSoundLibrary(const FileSystem& files);
