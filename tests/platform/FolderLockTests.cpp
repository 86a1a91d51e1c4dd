#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "platform/FolderLock.h"
#include "support/TempFolder.h"

namespace {

using State = FolderLock::State;
using Names = std::vector<std::string>;

TEST(FolderLockTest, OneHoldsTheFolderAndOthersAreToldWho) {
  const TempFolder folder;
  FolderLock lock = FolderLock::Take(folder.Native(), "kvpk");
  ASSERT_EQ(lock.GetState(), State::kHeld);
  EXPECT_FALSE(lock.WasLeft());
  const FolderLock second = FolderLock::Take(folder.Native() / ".", "KELVO");
  EXPECT_EQ(second.GetState(), State::kTaken);
  EXPECT_EQ(second.GetHolder().program, "kvpk");
  EXPECT_GT(second.GetHolder().process, 0);
  lock.Release();
  EXPECT_EQ(folder.List(), Names{}) << "nothing is left of it";
  EXPECT_EQ(FolderLock::Take(folder.At("none"), "kvpk").GetState(), State::kNone);

  // What a killed one leaves, or a stranger has written.
  for (const char* text : {"kvpk 1\n", "", "\x1B[2J 1\n", "kvpk x\n"}) {
    folder.Write(".kelvo-lock", text);
    FolderLock next = FolderLock::Take(folder.Native(), "KELVO");
    EXPECT_EQ(next.GetState(), State::kHeld) << text;
    EXPECT_TRUE(next.WasLeft());
    EXPECT_EQ(FolderLock::Take(folder.Native(), "kvpk").GetHolder().program, "KELVO");
  }
}

TEST(FolderLockTest, NoPathOfAScriptLeadsToItsFile) {
  const TempFolder folder;
  folder.MakeFolder("game");
  folder.Write("other", "x");
  const FileSystem files;
  const FolderLock lock = FolderLock::Take(folder.At("game"), "kvpk");
  EXPECT_EQ(files.FindFirst(folder.Dos("game\\*.*"), 22), "");
  const std::string path = folder.Dos("game\\.KELVO-lock.");
  EXPECT_EQ(files.FindFirst(path, 22), "");
  EXPECT_ANY_THROW(files.Delete(path));
  EXPECT_ANY_THROW(files.Copy(folder.Dos("other"), path));
  EXPECT_EQ(FolderLock::Take(folder.At("game"), "kvpk").GetHolder().program, "kvpk");
}

TEST(FolderLockTest, HalfWrittenFilesOfTheDeadGo) {
  const TempFolder folder;
  const FileSystem files;
  const Names dead = {"a/.kelvo-2000000000-0.tmp", "a/b/.kelvo-2000000000-17.tmp"};
  const Names others = {"a/.kelvo-x-0.tmp", "a/kelvo-2000000000-0.tmp",
                        "a/.kelvo-2000000000-0.txt"};
  for (const Names& names : {dead, others})
    for (const std::string& name : names) folder.Write(name, "x");
  // In a folder that is written to, and all below one that a run was killed in.
  files.ReplaceWhole(folder.Dos("a\\new"), "x");
  EXPECT_EQ(folder.Read(dead[0]) + folder.Read(dead[1]), "(missing)x");
  files.RemoveDeadHelpersBelow(folder.Dos());
  EXPECT_EQ(folder.Read(dead[1]), "(missing)");
  for (const std::string& name : others) EXPECT_EQ(folder.Read(name), "x") << name;
}

}  // namespace
