#include <regex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/ProgressRange.h"
#include "core/StatusLog.h"
#include "core/basDebugLog.h"
#include "core/basMain.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/TempFolder.h"

namespace {

TEST(ProgressRange, IgnoresWhatLiesAboveAndRefusesWhatLiesBelow) {
  ProgressRange range;
  range.SetMin(10);
  range.SetValue(100);
  range.SetValue(101);
  EXPECT_THROW(range.SetValue(9), Failure);
  EXPECT_EQ(range.Value(), 100);
}

TEST(Trapped, CatchesAllButAWantedStop) {
  std::vector<std::string> lines;
  basDebugLog::SetRecorder([&](const basDebugLog::TrappedFailure& failure) {
    lines.push_back(Concat(failure.source, failure.callerTells ? "! " : ": ", failure.cause));
  });
  EXPECT_EQ(CauseOf("frmMain.Init", [] {}), std::nullopt);
  EXPECT_EQ(CauseOf("basScript.Copy", [] { Fail("copy \"", "x", "\": ", 5); }), "copy \"x\": 5");
  Trapped("frmMain.X", [] { throw std::out_of_range("index"); });
  Trapped("frmMain.Y", [] { throw 7; });
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0], "basScript.Copy! copy \"x\": 5");
  EXPECT_EQ(lines[1], "frmMain.X: index");
  EXPECT_THAT(lines[2], testing::StartsWith("frmMain.Y: "));
  EXPECT_THROW(Trapped("frmMain.Z", [] { throw WantedStop{2}; }), WantedStop);
  EXPECT_EQ(lines.size(), 3U) << "a wanted stop is no failure";
  basDebugLog::SetRecorder({});
}

TEST(basMain, FindsThePackAndTestsTheGameDirectory) {
  const TempFolder folder;
  const FileSystem files;
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

  EXPECT_FALSE(basMain::IsGameDirectory(files, "Q:\\x"));
  folder.MakeFolder("Gta_SA.exe");
  EXPECT_FALSE(basMain::IsGameDirectory(files, folder.Dos()));
  folder.Write("Game/GTA_SA.EXE", "");
  EXPECT_TRUE(basMain::IsGameDirectory(files, folder.Dos("game")));
  EXPECT_TRUE(basMain::IsGameDirectory(files, folder.Dos("game") + "\\"));
}

TEST(StatusLog, TheTypedWordSwitchesTheLogOn) {
  const std::vector<std::pair<std::string, bool>> cases = {
      {"xlogswitch", true},   // a wrong character clears the word, and that is all
      {"llogswitch", false},  // ... it isn't taken as the word's first letter
      {"Logswitch", false},   // capitals pass as its beginning, but not as the word
      {"LOGSWITCHxlogswitch", true}};
  const TempFolder folder;
  const FileSystem files;
  for (const auto& [typed, enabled] : cases) {
    StatusLog log(files, folder.Dos());
    for (const char letter : typed) log.CharacterTyped(letter);
    EXPECT_EQ(log.LogEnabled, enabled) << typed;
  }
}

TEST(StatusLog, AddsALineForEachStatusTextAndOnlyWhenSwitchedOn) {
  const TempFolder folder;
  const FileSystem files;
  StatusLog log(files, folder.Dos());
  log.StatusChanged("before");
  EXPECT_EQ(files.FindFirst(folder.Dos("kelvo.log"), kFindFiles), "");

  log.LogEnabled = true;
  log.StatusChanged("L\xF6sche Datei...a.txt");
  log.StatusChanged("");
  const std::regex lines(
      "[^\t\r\n]+ [^\t\r\n]+\tL\xF6sche Datei...a.txt\r\n"
      "[^\t\r\n]+ [^\t\r\n]+\t\r\n");
  EXPECT_TRUE(std::regex_match(files.ReadWhole(folder.Dos("kelvo.log")), lines));
  files.Faults().FailAt(1);
  EXPECT_NO_THROW(log.StatusChanged("a log that can't be written holds nothing up"));
}

}  // namespace
