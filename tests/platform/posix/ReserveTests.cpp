// Room on a file system that can't set any aside.

#include <cerrno>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/TempFolder.h"

namespace {

bool canSetAside = true;

}  // namespace

// In the place of the system's own.
extern "C" int fallocate(int number, int mode, off_t offset, off_t length) {
  if (canSetAside) return static_cast<int>(syscall(SYS_fallocate, number, mode, offset, length));
  errno = EOPNOTSUPP;
  return -1;
}

namespace {

TEST(ReserveByWriting, GivesRoomOrLeavesTheFileAsItWas) {
  canSetAside = false;
  const TempFolder folder;
  const FileSystem files;
  constexpr std::int64_t kRoom = 3000000;
  folder.Write("a", "0123456");
  File file = files.OpenBinary(folder.Dos("a"));
  // Behind the reservation's own step, it is a write that fails: the first, or the second.
  for (const int step : {2, 3}) {
    files.Faults().FailAt(step);
    EXPECT_THROW(file.Reserve(7, 2000000), Failure);
    EXPECT_EQ(folder.Read("a"), "0123456");
  }
  files.Faults().FailAt(0);
  file.Reserve(8, kRoom);
  EXPECT_EQ(std::filesystem::file_size(folder.At("a")), 8 + kRoom);
  EXPECT_EQ(file.Size(), 7);
  char buffer[16];
  EXPECT_EQ(file.ReadSomeAt(0, buffer, 16), 7U);
  file.SetSize(8);
  file.WriteAt(8, "x");
  EXPECT_EQ(file.Size(), 9);
  EXPECT_EQ(std::filesystem::file_size(folder.At("a")), 8 + kRoom) << "the rest is still there";
  file.Close();
  EXPECT_EQ(folder.Read("a"), std::string("0123456\0x", 9));
  canSetAside = true;
}

}  // namespace
