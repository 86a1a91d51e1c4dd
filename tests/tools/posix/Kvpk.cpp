#include "tools/Kvpk.h"

#include <array>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

KvpkRun Kvpk(const TempFolder& folder, const std::vector<std::string>& arguments) {
  const TempFolder own;
  own.MakeFolder("tmp");
  std::vector<std::string> words{KVPK_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  std::string path = "PATH=/usr/bin:/bin";
  std::string temp = "TMPDIR=" + own.At("tmp").string();
  std::string home = "HOME=" + own.At("tmp").string();
  std::array<char*, 4> environment{path.data(), temp.data(), home.data(), nullptr};

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_addopen(&actions, 1, own.At("out").c_str(), kFlags, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, own.At("err").c_str(), kFlags, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, folder.Native().c_str());
  pid_t process = 0;
  const int error =
      posix_spawn(&process, KVPK_PROGRAM, &actions, nullptr, argv.data(), environment.data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("can't start " KVPK_PROGRAM);
  int status = 0;
  waitpid(process, &status, 0);
  EXPECT_EQ(own.List("tmp"), std::vector<std::string>{}) << "temporary files are left";
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, own.Read("out"), own.Read("err")};
}
