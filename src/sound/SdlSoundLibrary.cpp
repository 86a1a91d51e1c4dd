#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

// The program has its own entry.
#define SDL_MAIN_HANDLED
#include <SDL.h>
#include <SDL_mixer.h>

#include "core/basDebugLog.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "sound/JobThread.h"
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
/// How long closing waits for a click at most. A click takes less than half of it; a device that
/// hangs would take for ever.
constexpr std::chrono::milliseconds kLongestClick(100);
/// How long the program's end waits for an open device to close.
constexpr std::chrono::milliseconds kLongestClosing(500);
/// A click that comes later than this, because the device took so long to open, isn't played.
constexpr std::chrono::milliseconds kLatestClick(500);

/// Modules of this kind have a tenth of it, seldom half.
constexpr std::int64_t kLargestModule = std::int64_t{4} << 20;
/// Behind the head of 31 samples and the order of patterns: which number of channels it has.
constexpr std::size_t kMarkerAt = 1080;
constexpr std::array<std::string_view, 6> kMarkers = {"M.K.", "M!K!", "FLT4",
                                                      "4CHN", "6CHN", "8CHN"};

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

/// The bytes of a module, if it is one by size and marker.
std::string ReadModule(const FileSystem& files, std::string_view path) {
  const File file = files.OpenForReading(path);
  const std::int64_t size = file.Size();
  if (size > kLargestModule) Fail("tune \"", path, "\": ", size, " bytes are too many");
  std::string bytes = file.ReadAt(0, size);
  const std::string_view fromMarker =
      std::string_view(bytes).substr(std::min(bytes.size(), kMarkerAt));
  const auto isAt = [&](std::string_view marker) { return fromMarker.starts_with(marker); };
  if (std::ranges::none_of(kMarkers, isAt)) Fail("tune \"", path, "\": no module's marker");
  return bytes;
}

/// Tune and click by SDL2_mixer, mixed into one device, which is open only as long as it's needed:
/// from the first call that sounds to `Close`. For one thread, but for `IsOpen`.
class SdlPlayer {
 public:
  void OpenDevice(int mixRate, int channels);
  void LoadSong(std::string module, Song song);
  void PlaySong(Song song);
  void StopSong(Song song) const;
  void Close();
  void PlayWave(std::string_view wave);

  [[nodiscard]] bool IsOpen() const { return open_; }

 private:
  void CloseDevice();
  void FreeSong();
  void FreeWave();
  [[nodiscard]] bool WaveSounds() const;

  struct Free {
    void operator()(Mix_Music* music) const { Mix_FreeMusic(music); }
    void operator()(Mix_Chunk* chunk) const { Mix_FreeChunk(chunk); }
  };

  std::atomic<bool> open_ = false;
  bool refused_ = false;  // the device couldn't be opened since the last Close
  std::string module_;    // the bytes of the tune
  std::unique_ptr<Mix_Music, Free> music_;
  Song song_ = 0;          // the handle of music_
  std::string_view wave_;  // what chunk_ was made of
  std::unique_ptr<Mix_Chunk, Free> chunk_;
};

// A device that refuses may take half a minute to say so: it is asked once.
void SdlPlayer::OpenDevice(int mixRate, int channels) {
  if (open_ || refused_) return;
  refused_ = true;  // until all has gone well
  // Without this the library takes Ctrl-C and termination signals away from the program.
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "KELVO");
  SilenceAlsa();
  if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) Fail("sound: no audio system: ", SDL_GetError());
  if (Mix_OpenAudioDevice(mixRate, AUDIO_S16SYS, 2, kBufferSamples, nullptr,
                          SDL_AUDIO_ALLOW_FREQUENCY_CHANGE) != 0) {
    const std::string cause = SDL_GetError();
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    Fail("sound: no device at ", mixRate, " samples a second: ", cause);
  }
  refused_ = false;
  Mix_AllocateChannels(channels);
  open_ = true;
}

void SdlPlayer::LoadSong(std::string module, Song song) {
  FreeSong();
  if (!open_) return;
  module_ = std::move(module);
  music_.reset(Mix_LoadMUSType_RW(Stream(module_), MUS_MOD, 1));
  if (!music_) Fail("tune ", song, ": ", SDL_GetError());
  song_ = song;
}

void SdlPlayer::PlaySong(Song song) {
  if (song == 0 || song != song_) return;
  if (Mix_PlayMusic(music_.get(), kForever) != 0) Fail("tune ", song, ": ", SDL_GetError());
}

void SdlPlayer::StopSong(Song song) const {
  if (song != 0 && song == song_) Mix_HaltMusic();
}

// The click of the button that closes the window is still to be heard. Nobody would close the
// device later: the chat window may stay open for hours, and be silent.
void SdlPlayer::Close() {
  refused_ = false;
  FreeSong();
  const auto latest = std::chrono::steady_clock::now() + kLongestClick;
  while (WaveSounds() && std::chrono::steady_clock::now() < latest) SDL_Delay(1);
  CloseDevice();
}

void SdlPlayer::PlayWave(std::string_view wave) {
  if (!open_) return;
  if (!chunk_ || wave_.data() != wave.data()) {
    FreeWave();
    chunk_.reset(Mix_LoadWAV_RW(Stream(wave), 1));
    if (!chunk_) Fail("wave of ", wave.size(), " bytes: ", SDL_GetError());
    wave_ = wave;
  }
  if (Mix_PlayChannel(kWaveChannel, chunk_.get(), 0) < 0)
    Fail("wave of ", wave.size(), " bytes: ", SDL_GetError());
}

bool SdlPlayer::WaveSounds() const {
  return open_ && Mix_Playing(kWaveChannel) != 0;
}

void SdlPlayer::FreeSong() {
  music_.reset();
  module_.clear();
  song_ = 0;
}

void SdlPlayer::FreeWave() {
  chunk_.reset();
  wave_ = {};
}

void SdlPlayer::CloseDevice() {
  if (!open_) return;
  FreeSong();
  FreeWave();
  Mix_CloseAudio();
  SDL_QuitSubSystem(SDL_INIT_AUDIO);
  open_ = false;  // only now: the program's end waits for a device that is being closed
}

/// Has a player play on a thread of its own: sound servers may take what time they like to answer,
/// or never do.
class SdlSoundLibrary : public SoundLibrary {
 public:
  explicit SdlSoundLibrary(const FileSystem& files) : files_(files) {}
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
  template <typename Step>
  void Post(Step step);

  const FileSystem& files_;
  std::shared_ptr<SdlPlayer> player_;  // none until the first call that needs it
  JobThread thread_;
  Song lastSong_ = 0;
};

SdlSoundLibrary::~SdlSoundLibrary() {
  Trapped("SdlSoundLibrary.~SdlSoundLibrary", [this] {
    const bool isOpen = player_ && player_->IsOpen();
    SdlSoundLibrary::Close();
    if (isOpen) thread_.Wait(kLongestClosing);
  });
}

template <typename Step>
void SdlSoundLibrary::Post(Step step) {
  if (!player_) player_ = std::make_shared<SdlPlayer>();
  thread_.Post([player = player_, step = std::move(step)]() mutable {
    Trapped("SdlSoundLibrary", [&] { step(*player); });
    // What the library keeps for a thread doesn't go with one that it hasn't made itself.
    SDL_TLSCleanup();
  });
}

void SdlSoundLibrary::Init(int mixRate, int channels) {
  Post([=](SdlPlayer& player) { player.OpenDevice(mixRate, channels); });
}

Song SdlSoundLibrary::LoadSong(std::string_view path) {
  std::string module = ReadModule(files_, path);
  const Song song = ++lastSong_;
  Post([song, module = std::move(module)](SdlPlayer& player) mutable {
    player.LoadSong(std::move(module), song);
  });
  return song;
}

void SdlSoundLibrary::PlaySong(Song song) {
  Post([song](SdlPlayer& player) { player.PlaySong(song); });
}

void SdlSoundLibrary::StopSong(Song song) {
  if (player_) Post([song](SdlPlayer& player) { player.StopSong(song); });
}

// What was to be played on a device that is still being opened isn't wanted any more.
void SdlSoundLibrary::Close() {
  if (!player_) return;
  if (!player_->IsOpen()) thread_.DropWaiting();
  Post([](SdlPlayer& player) { player.Close(); });
}

void SdlSoundLibrary::PlayWave(std::string_view wave) {
  const auto latest = std::chrono::steady_clock::now() + kLatestClick;
  Post([wave, latest](SdlPlayer& player) {
    player.OpenDevice(kMixRate, kChannels);
    if (std::chrono::steady_clock::now() < latest) player.PlayWave(wave);
  });
}

}  // namespace

std::unique_ptr<SoundLibrary> MakeSoundLibrary(const FileSystem& files) {
  return std::make_unique<SdlSoundLibrary>(files);
}
