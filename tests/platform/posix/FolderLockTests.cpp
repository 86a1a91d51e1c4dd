#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/FileSystem.h"
#include "platform/FolderLock.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

TEST(FolderLockOnPosix, TheSystemDropsItWithItsHolder) {
  const TempFolder folder;
  int ready[2] = {};
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const FolderLock lock = FolderLock::Take(folder.Native(), "kvpk");
    static_cast<void>(!write(ready[1], "x", 1));
    pause();
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  EXPECT_EQ(FolderLock::Take(folder.Native(), "kvpk").GetHolder().process, child);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(FolderLock::Take(folder.Native(), "kvpk").WasLeft());
}

TEST(FolderLockOnPosix, NothingIsWrittenThroughALinkInTheGuardedFolder) {
  const TempFolder folder;
  const FileSystem files;
  folder.MakeFolder("temp");
  fs::create_symlink("../precious", folder.At("temp/.kelvo-lock"));
  const FolderLock lock = FolderLock::Take(folder.At("temp"), "kvpk");
  files.WriteOnlyOwnFilesIn(folder.Dos("temp"));
  const std::string path = folder.Dos("temp\\x");
  const std::vector<std::function<void()>> writes = {
      [&] { files.OpenForOutput(path).WriteAt(0, "new"); },
      [&] { files.Create(path).WriteAt(0, "new"); }, [&] { files.WriteWhole(path, "new"); }};
  for (const auto& write : writes) {
    for (const bool hard : {false, true}) {
      folder.Write("precious", "old");
      fs::remove(folder.At("temp/x"));
      if (hard)
        fs::create_hard_link(folder.At("precious"), folder.At("temp/x"));
      else
        fs::create_symlink("../precious", folder.At("temp/x"));
      write();
      EXPECT_EQ(folder.Read("precious") + folder.Read("temp/x"), "oldnew") << hard;
    }
  }
}

}  // namespace
