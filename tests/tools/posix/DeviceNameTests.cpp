// Files whose names mean devices on Windows can only be made elsewhere.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/Kvpk.h"

namespace {

TEST(Build, RefusesPayloadThatIsADeviceOnWindows) {
  const TempFolder folder;
  folder.Write("src/pack.ini", "[Pack]\nTitle=x\n");
  folder.Write("src/payload/con.txt", "");
  const KvpkRun run = Kvpk(folder, {"build", "src", "a.kvpk"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_THAT(run.errors, testing::StartsWith("kvpk: payload/con.txt: an entry of this name could "
                                              "never be unpacked"));
}

}  // namespace
