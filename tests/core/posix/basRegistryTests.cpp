#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/basRegistry.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "support/TempFolder.h"

namespace {

TEST(basRegistry, FindsTheGameDirectory) {
  const TempFolder folder;
  folder.MakeFolder("dosdevices");
  folder.MakeFolder("Drive");
  std::filesystem::create_directory_symlink("../Drive", folder.At("dosdevices/c:"));
  Registry::Source source;
  EXPECT_EQ(basRegistry::FindGameDirectory(FileSystem(), source), "");
  source.prefixes = {folder.Native()};
  EXPECT_EQ(basRegistry::FindGameDirectory(FileSystem(), source), "");

  const auto find = [&](const std::string& value) {
    folder.Write("system.reg",
                 "WINE REGISTRY Version 2\n\n"
                 "[Software\\\\Rockstar Games\\\\GTA San Andreas\\\\Installation] 17\n" +
                     value + "\n");
    return basRegistry::FindGameDirectory(FileSystem(), source);
  };
  for (const char* value : {R"("ExePath"="C:\\Spiele\\San Andreas\\GTA_SA.exe")",
                            R"("exepath"="\"C:\\SPIELE\\San Andreas\\gta_sa.EXE\"")",
                            R"("ExePath"="C:\\Spiele\\San Andreas")"})
    EXPECT_THAT(find(value), testing::EndsWith("\\spiele\\san andreas"));
  EXPECT_EQ(find(R"("Other"="C:\\x\\gta_sa.exe")"), "");
  source.steamGames = {folder.At("Drive")};
  EXPECT_EQ(find(R"("Other"="x")"), Text::LowerCase(folder.Dos("Drive")));
}

}  // namespace
