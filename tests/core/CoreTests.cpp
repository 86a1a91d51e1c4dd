#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/ProgressRange.h"
#include "core/basDebugLog.h"
#include "core/basMain.h"
#include "core/basRegistry.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/TempFolder.h"

namespace {

TEST(ProgressRange, KeepsItsRules) {
  ProgressRange range;
  EXPECT_EQ(range.Max(), 100);
  EXPECT_EQ(range.Min(), 0);
  range.SetValue(100);
  EXPECT_EQ(range.Value(), 100);
  range.SetValue(101);  // above the top: nothing happens
  EXPECT_EQ(range.Value(), 100);
  range.SetMin(10);  // the position stays
  EXPECT_EQ(range.Value(), 100);
  EXPECT_THROW(range.SetValue(9), Failure);
  EXPECT_EQ(range.Value(), 100);
  range.SetMax(50);  // to 0, although that lies below the bottom
  EXPECT_EQ(range.Value(), 0);
  range.SetValue(10);
  EXPECT_EQ(range.Value(), 10);
  range.SetMax(-5);
  EXPECT_EQ(range.Value(), 0);
  range.SetValue(0);
  EXPECT_EQ(range.Value(), 0);
}

TEST(Trapped, CatchesAllAndHandsItToLogError) {
  std::vector<std::string> lines;
  basDebugLog::SetRecorder([&](const std::string& line) { lines.push_back(line); });
  int steps = 0;
  EXPECT_EQ(Trapped("frmMain.Init", [&] { ++steps; }), std::nullopt);
  EXPECT_EQ(Trapped("basScript.Copy",
                    [&] {
                      ++steps;
                      Fail("copy \"", "x", "\": ", 5);
                      ++steps;
                    }),
            "copy \"x\": 5");
  EXPECT_EQ(Trapped("frmMain.X", [] { throw std::out_of_range("index"); }), "index");
  EXPECT_TRUE(Trapped("frmMain.Y", [] { throw 7; }).has_value());
  EXPECT_EQ(steps, 2);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0], "basScript.Copy: copy \"x\": 5");
  EXPECT_THAT(lines[2], testing::StartsWith("frmMain.Y: "));

  basDebugLog::SetRecorder({});
  EXPECT_EQ(basDebugLog::LogError("a.b", "cause"), 0);
  EXPECT_EQ(lines.size(), 3U);
}

TEST(basMain, FindsThePackAndTestsTheGameDirectory) {
  const TempFolder folder;
  const FileSystem files;
  EXPECT_EQ(basMain::TempDirOf("C:\\KELVO"), "C:\\KELVO\\inst_temp");
  EXPECT_EQ(basMain::TempDirOf("C:\\"), "C:\\inst_temp");

  folder.MakeFolder("a.kvpk");
  folder.Write("0.kvpk.txt", "");
  EXPECT_EQ(basMain::FindPack(files, "", folder.Dos()), "");
  folder.Write("Zebra.kvpk", "");
  folder.Write("affe.KVPK", "");
  folder.Write(".hidden.kvpk", "");
  EXPECT_EQ(basMain::FindPack(files, "", folder.Dos()), folder.Dos("affe.KVPK"));
  EXPECT_EQ(basMain::FindPack(files, "\"\"", folder.Dos() + "\\"), folder.Dos("affe.KVPK"));
  // The command line is one path, whatever it holds and whether it's there or not.
  EXPECT_EQ(basMain::FindPack(files, "\"D:\\my pack.kvpk\" x", folder.Dos()), "D:\\my pack.kvpk x");

  EXPECT_FALSE(basMain::IsGameDirectory(files, folder.Dos()));
  EXPECT_FALSE(basMain::IsGameDirectory(files, folder.Dos("nowhere")));
  EXPECT_FALSE(basMain::IsGameDirectory(files, "Q:\\x"));
  folder.MakeFolder("Gta_SA.exe");
  EXPECT_FALSE(basMain::IsGameDirectory(files, folder.Dos()));
  folder.Write("Game/GTA_SA.EXE", "");
  EXPECT_TRUE(basMain::IsGameDirectory(files, folder.Dos("game")));
  EXPECT_TRUE(basMain::IsGameDirectory(files, folder.Dos("game") + "\\"));
}

TEST(basRegistry, FindsTheGameDirectory) {
  const TempFolder folder;
  folder.MakeFolder("dosdevices");
  folder.MakeFolder("Drive");
  std::filesystem::create_directory_symlink("../Drive", folder.At("dosdevices/c:"));
  Registry::Source source;
  EXPECT_EQ(basRegistry::FindGameDirectory(source), "");
  source.prefixes = {folder.Native()};
  EXPECT_EQ(basRegistry::FindGameDirectory(source), "");

  const auto find = [&](const std::string& value) {
    folder.Write("system.reg",
                 "WINE REGISTRY Version 2\n\n"
                 "[Software\\\\Rockstar Games\\\\GTA San Andreas\\\\Installation] 17\n" +
                     value + "\n");
    return basRegistry::FindGameDirectory(source);
  };
  // The directory behind the drive may be given under its own name or the link's.
  const auto isGame = [](const std::string& text) {
    return testing::Matches(testing::AllOf(testing::StartsWith("z:\\"),
                                           testing::EndsWith("\\spiele\\san andreas")))(text);
  };
  for (const char* value : {R"("ExePath"="C:\\Spiele\\San Andreas\\GTA_SA.exe")",
                            R"("exepath"="\"C:\\SPIELE\\San Andreas\\gta_sa.EXE\"")",
                            R"("ExePath"="C:\\Spiele\\San Andreas")"})
    EXPECT_TRUE(isGame(find(value))) << find(value);
  EXPECT_EQ(find(R"("Other"="C:\\x\\gta_sa.exe")"), "");
  EXPECT_EQ(
      basRegistry::RegReadValue(source, Registry::Root::kLocalMachine,
                                R"(SOFTWARE\Rockstar Games\GTA San Andreas\Installation)", "other")
          .substr(0, 3),
      "Z:\\");
}

}  // namespace
