#include <memory>
#include <string>
#include <string_view>

// The program has its own entry.
#define SDL_MAIN_HANDLED
#include <SDL.h>
#include <SDL_mixer.h>

#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "sound/SoundLibrary.h"

namespace {

constexpr int kMixRate = 44100;
constexpr int kChannels = 32;
/// Samples of the device's buffer: a click comes within a fortieth of a second, and the device
/// still has as much in hand while an install keeps the processors busy.
constexpr int kBufferSamples = 1024;
/// The channel of all waves. Tunes don't take up channels.
constexpr int kWaveChannel = 0;
constexpr int kForever = -1;
/// How long closing waits for a click at most, in milliseconds. A click takes less than half of it;
/// a device that hangs would take for ever.
constexpr Uint64 kLongestWait = 100;

SDL_RWops* Stream(std::string_view bytes) {
  return SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
}

using AlsaReporter = void (*)(const char*, int, const char*, int, const char*, ...);

// NOLINTNEXTLINE(cert-dcl50-cpp): ALSA wants it so.
extern "C" void ReportNothing(const char* /*file*/, int /*line*/, const char* /*function*/,
                              int /*error*/, const char* /*format*/, ...) {}

/// ALSA writes to stderr about each device that it doesn't find. Where it isn't there, neither is
/// the noise. It stays loaded, so that what is set stays set.
void SilenceAlsa() {
  static void* const alsa = SDL_LoadObject("libasound.so.2");
  if (alsa == nullptr) return;
  using Setter = int (*)(AlsaReporter);
  const auto set = reinterpret_cast<Setter>(SDL_LoadFunction(alsa, "snd_lib_error_set_handler"));
  if (set != nullptr) set(ReportNothing);
}

/// Tune and click by SDL2_mixer, mixed into one device, which is open only as long as it's needed:
/// from the first call that sounds to `Close`.
class SdlSoundLibrary : public SoundLibrary {
 public:
  explicit SdlSoundLibrary(const FileSystem& files);
  SdlSoundLibrary(SdlSoundLibrary&&) = delete;
  SdlSoundLibrary(const SdlSoundLibrary&) = delete;
  SdlSoundLibrary& operator=(SdlSoundLibrary&&) = delete;
  SdlSoundLibrary& operator=(const SdlSoundLibrary&) = delete;
  ~SdlSoundLibrary() override;

  void Init(int mixRate, int channels) override;
  Song LoadSong(std::string_view path) override;
  void PlaySong(Song song) override;
  void StopSong(Song song) override;
  void Close() override;
  void PlayWave(std::string_view wave) override;

 private:
  void OpenDevice(int mixRate, int channels);
  void CloseDevice();
  void EndSounds();
  void FreeSong();
  void FreeWave();
  [[nodiscard]] bool WaveSounds() const;

  struct Free {
    void operator()(Mix_Music* music) const { Mix_FreeMusic(music); }
    void operator()(Mix_Chunk* chunk) const { Mix_FreeChunk(chunk); }
  };

  const FileSystem& files_;
  bool open_ = false;
  bool refused_ = false;  // the device couldn't be opened since the last Init or Close
  std::string module_;    // the bytes of the tune
  std::unique_ptr<Mix_Music, Free> music_;
  Song song_ = 0;  // the handle of music_
  Song lastSong_ = 0;
  std::string_view wave_;  // what chunk_ was made of
  std::unique_ptr<Mix_Chunk, Free> chunk_;
};

SdlSoundLibrary::SdlSoundLibrary(const FileSystem& files) : files_(files) {}

SdlSoundLibrary::~SdlSoundLibrary() {
  EndSounds();
}

void SdlSoundLibrary::Init(int mixRate, int channels) {
  refused_ = false;
  OpenDevice(mixRate, channels);
}

void SdlSoundLibrary::OpenDevice(int mixRate, int channels) {
  if (open_) return;
  // Without this the library takes Ctrl-C and termination signals away from the program.
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "KELVO");
  SilenceAlsa();
  if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) {
    refused_ = true;
    Fail("sound: no audio system: ", SDL_GetError());
  }
  if (Mix_OpenAudioDevice(mixRate, AUDIO_S16SYS, 2, kBufferSamples, nullptr,
                          SDL_AUDIO_ALLOW_FREQUENCY_CHANGE) != 0) {
    refused_ = true;
    const std::string cause = SDL_GetError();
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    Fail("sound: no device at ", mixRate, " samples a second: ", cause);
  }
  open_ = true;
  Mix_AllocateChannels(channels);
}

Song SdlSoundLibrary::LoadSong(std::string_view path) {
  FreeSong();
  module_ = files_.ReadWhole(path);
  music_.reset(Mix_LoadMUSType_RW(Stream(module_), MUS_MOD, 1));
  if (!music_) Fail("tune \"", path, "\": ", SDL_GetError());
  song_ = ++lastSong_;
  return song_;
}

void SdlSoundLibrary::PlaySong(Song song) {
  if (song == 0 || song != song_) return;
  if (Mix_PlayMusic(music_.get(), kForever) != 0) Fail("tune ", song, ": ", SDL_GetError());
}

void SdlSoundLibrary::StopSong(Song song) {
  if (song != 0 && song == song_) Mix_HaltMusic();
}

void SdlSoundLibrary::Close() {
  refused_ = false;
  EndSounds();
}

// The click of the button that closes the window is still to be heard. Nobody would close the
// device later: the chat window may stay open for hours, and be silent.
void SdlSoundLibrary::EndSounds() {
  FreeSong();
  const Uint64 start = SDL_GetTicks64();
  while (WaveSounds() && SDL_GetTicks64() - start < kLongestWait) SDL_Delay(1);
  CloseDevice();
}

void SdlSoundLibrary::PlayWave(std::string_view wave) {
  // A device that refuses is slow to say so, and there may be many clicks.
  if (!open_ && refused_) return;
  OpenDevice(kMixRate, kChannels);
  if (!chunk_ || wave_.data() != wave.data()) {
    FreeWave();
    chunk_.reset(Mix_LoadWAV_RW(Stream(wave), 1));
    if (!chunk_) Fail("wave of ", wave.size(), " bytes: ", SDL_GetError());
    wave_ = wave;
  }
  if (Mix_PlayChannel(kWaveChannel, chunk_.get(), 0) < 0)
    Fail("wave of ", wave.size(), " bytes: ", SDL_GetError());
}

bool SdlSoundLibrary::WaveSounds() const {
  return open_ && Mix_Playing(kWaveChannel) != 0;
}

void SdlSoundLibrary::FreeSong() {
  music_.reset();
  module_.clear();
  song_ = 0;
}

void SdlSoundLibrary::FreeWave() {
  chunk_.reset();
  wave_ = {};
}

void SdlSoundLibrary::CloseDevice() {
  if (!open_) return;
  FreeSong();
  FreeWave();
  Mix_CloseAudio();
  SDL_QuitSubSystem(SDL_INIT_AUDIO);
  open_ = false;
}

}  // namespace

std::unique_ptr<SoundLibrary> MakeSoundLibrary(const FileSystem& files) {
  return std::make_unique<SdlSoundLibrary>(files);
}
