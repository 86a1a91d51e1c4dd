#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "support/EnvironmentVariable.h"
#include "support/TempFolder.h"
#include "tools/OwnTempFolder.h"

namespace {

namespace fs = std::filesystem;

TEST(OwnTempFolderTest, RemovesWhatTheDeadHaveLeftAndNothingElse) {
  const TempFolder folder;
  const EnvironmentVariable place("TMPDIR", folder.Native().string());
  const FileSystem files;
  const OwnTempFolder living(files);
  for (const std::string name : {"kvpk-dead00", "kvpk-public", "other-dead", "kvpk-plain0"}) {
    folder.Write(name + "/below/payload", "x");
    if (name != "kvpk-plain0") folder.Write(name + "/.kelvo-lock", "kvpk 1\n");
    fs::permissions(folder.At(name), fs::perms::owner_all);
  }
  fs::permissions(folder.At("kvpk-public"), fs::perms::all);
  fs::create_directory_symlink("other-dead", folder.At("kvpk-link00"));
  { const OwnTempFolder another(files); }
  EXPECT_THAT(folder.List(),
              testing::UnorderedElementsAre(
                  testing::EndsWith(fs::path(files.ToNative(living.DosPath())).filename().string()),
                  "kvpk-public", "kvpk-link00", "kvpk-plain0", "other-dead"));
  EXPECT_EQ(folder.Read("other-dead/below/payload"), "x");
}

}  // namespace
