#include <atomic>

#include <malloc.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "core/basDebugLog.h"
#include "sound/Player.h"

namespace {

using std::chrono::milliseconds;

std::size_t CountOf(const char* folder) {
  const auto entries = std::filesystem::directory_iterator(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

/// Counts what is logged.
class Failures {
 public:
  Failures() {
    basDebugLog::SetRecorder([this](const auto& /*failure*/) { ++count_; });
  }
  ~Failures() { basDebugLog::SetRecorder({}); }
  Failures(const Failures&) = delete;
  Failures& operator=(const Failures&) = delete;
  Failures(Failures&&) = delete;
  Failures& operator=(Failures&&) = delete;

  void WaitFor(int count) const {
    for (int i = 0; i < 10'000 && count_ < count; ++i) std::this_thread::sleep_for(milliseconds(1));
    EXPECT_GE(count_, count);
  }

 private:
  std::atomic<int> count_ = 0;
};

/// A sound server that takes connections and never says a word.
class SilentServer {
 public:
  explicit SilentServer(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(bind(server_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(server_, 5), 0);
  }
  ~SilentServer() { close(server_); }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;
  SilentServer(SilentServer&&) = delete;
  SilentServer& operator=(SilentServer&&) = delete;

  [[nodiscard]] bool IsAskedWithin(milliseconds time) const {
    pollfd wait = {server_, POLLIN, 0};
    return poll(&wait, 1, static_cast<int>(time.count())) == 1;
  }
  void HangUp() const { close(accept(server_, nullptr, nullptr)); }

 private:
  int server_ = socket(AF_UNIX, SOCK_STREAM, 0);
};

TEST(SdlSound, AServerThatNeverAnswersHoldsNobodyUpAndIsAskedOnce) {
  const TempFolder folder;
  const SilentServer server(folder.At("server").string());
  const EnvironmentVariable address("PULSE_SERVER", "unix:" + folder.At("server").string());
  const Failures failures;
  const auto start = std::chrono::steady_clock::now();
  {
    Player player(0, "pulseaudio");
    const auto tick = [&] {
      player->PlayResWave("CLICK");
      player->PlayMOD();
    };
    tick();
    ASSERT_TRUE(server.IsAskedWithin(milliseconds(10'000)));
    server.HangUp();
    failures.WaitFor(1);
    EXPECT_FALSE(server.IsAskedWithin(milliseconds(200))) << "again, for the tune";
    player->StopMOD();
    tick();
    ASSERT_TRUE(server.IsAskedWithin(milliseconds(10'000)));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  server.HangUp();
  failures.WaitFor(2);
}

// The library for Windows wants no bytes behind a module.
TEST(SdlSound, AModuleMayHaveFourMebibytes) {
  std::string module(Tune::Module());
  module.resize(4U << 20);
  Player player(10);
  player.Folder().Write("music.mod", module);
  player->PlayMOD();
  player.PlayFrames(1);
  // The device is open before so long a module has been read.
  const auto isSilent = [&] {
    return player.Folder().Read("device").find_first_not_of('\0') == std::string::npos;
  };
  for (int i = 0; i < 100 && isSilent(); ++i) player.PlayFrames(kRate / 10);
  EXPECT_FALSE(IsSilence(player.Stop()));
}

TEST(SdlSound, NoDeviceIsSilenceAndNoNote) {
  const EnvironmentVariable card("ALSA_CARD", "99");
  for (const char* driver : {"nosuchdriver", "alsa"}) {
    const Failures failures;
    Player player(0, driver);
    testing::internal::CaptureStderr();
    player->PlayMOD();
    failures.WaitFor(1);
    player->StopMOD();
    player->PlayResWave("CLICK");
    failures.WaitFor(2);
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
    player.PlayFrames(1);
    player.Stop();
  }
  EXPECT_EQ(CountOf("/proc/self/fd"), files);
  EXPECT_EQ(CountOf("/proc/self/task"), threads);
  EXPECT_LT(mallinfo2().uordblks, memory + 100000) << "ninety tunes have seven million bytes";
}

}  // namespace
