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
  for (const char* name : {"kvpk-dead00", "kvpk-public", "other-dead"}) {
    folder.Write(std::string(name) + "/.kelvo-lock", "kvpk 1\n");
    folder.Write(std::string(name) + "/below/payload", "x");
    fs::permissions(folder.At(name), fs::perms::owner_all);
  }
  fs::permissions(folder.At("kvpk-public"), fs::perms::all);
  fs::create_directory_symlink("other-dead", folder.At("kvpk-link00"));
  folder.Write("kvpk-plain0/file", "x");
  fs::permissions(folder.At("kvpk-plain0"), fs::perms::owner_all);
  { const OwnTempFolder another(files); }
  EXPECT_THAT(folder.List(),
              testing::UnorderedElementsAre(
                  testing::EndsWith(fs::path(files.ToNative(living.DosPath())).filename().string()),
                  "kvpk-public", "kvpk-link00", "kvpk-plain0", "other-dead"));
  EXPECT_EQ(folder.Read("other-dead/below/payload"), "x");
}

}  // namespace
