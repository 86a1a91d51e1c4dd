// The wish to stop, as a signal to the real program.

#include <array>
#include <csignal>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include "pack/ZlibStream.h"
#include "tools/Kvpk.h"

namespace {

TEST(Stop, EndsARunWithNothingHalfDone) {
  const TempFolder folder;
  folder.Write("game/data/gross", "old");
  folder.MakeFolder("temp");
  folder.Write("s.txt", "Copy {\r\ndata\r\ngross\r\n}\r\n");
  WriteArchive(folder, "a.kvpk", {{"gross", Compressed(std::string(400'000'000, '\0'))}});
  for (const auto& [signal, status] : {std::pair{SIGINT, 130}, {SIGTERM, 143}, {SIGHUP, 129}}) {
    SCOPED_TRACE(signal);
    std::array<std::string, 3> words{
        "sh", "-c",
        "exec " KVPK_PROGRAM " script s.txt --game game --pack a.kvpk --temp temp >out 2>err"};
    std::array<char*, 4> argv{words[0].data(), words[1].data(), words[2].data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, folder.Native().c_str());
    // Whoever runs the tests may ignore a signal, as nohup does.
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t process = 0;
    ASSERT_EQ(posix_spawn(&process, "/bin/sh", &actions, &attributes, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    int ended = 0;
    bool isOver = false;
    // As soon as it unpacks.
    while (!std::filesystem::exists(folder.At("temp/gross")) && !isOver) {
      isOver = waitpid(process, &ended, WNOHANG) == process;
      std::this_thread::yield();
    }
    ASSERT_FALSE(isOver);
    kill(process, signal);
    waitpid(process, &ended, 0);
    EXPECT_EQ(WIFEXITED(ended) ? WEXITSTATUS(ended) : -1, status);
    EXPECT_EQ(folder.Read("err"),
              "kvpk: stopped in \"s.txt\" at line 3; what was done until then stays done\n");
    EXPECT_TRUE(folder.Read("game/data/gross") == "old");
    std::filesystem::remove(folder.At("temp/gross"));
  }
}

}  // namespace
