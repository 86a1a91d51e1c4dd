#include "sound/SoundLibrary.h"

namespace {

/// Stands in where no library that can play is to be had.
class SilentSoundLibrary : public SoundLibrary {
 public:
  void Init(int /*mixRate*/, int /*channels*/) override {}
  Song LoadSong(std::string_view /*path*/) override { return 0; }
  void PlaySong(Song /*song*/) override {}
  void StopSong(Song /*song*/) override {}
  void Close() override {}
  void PlayWave(std::string_view /*wave*/) override {}
};

}  // namespace

std::unique_ptr<SoundLibrary> MakeSoundLibrary(const FileSystem& /*files*/) {
  return std::make_unique<SilentSoundLibrary>();
}
