#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/StatusLog.h"
#include "platform/FileSystem.h"
#include "support/TempFolder.h"

using testing::MatchesRegex;

TEST(StatusLog, TheTypedWordSwitchesTheLogOn) {
  struct Case {
    const char* typed;
    bool enabled;
  };
  const TempFolder folder;
  const FileSystem files;
  for (const Case& row : {
           Case{"logswitch", true},
           Case{"xlogswitch", true},   // a wrong character clears the word, and that is all
           Case{"llogswitch", false},  // ... it isn't taken as the word's first letter
           Case{"loglogswitch", false},
           Case{"LOGSWITCH", false},  // capitals pass as its beginning, but not as the word
           Case{"Logswitch", false},
           Case{"logswitc", false},
           Case{"LOGSWITCHxlogswitch", true},
       }) {
    StatusLog log(files, folder.Dos());
    for (const char* letter = row.typed; *letter != '\0'; ++letter) log.CharacterTyped(*letter);
    EXPECT_EQ(log.LogEnabled, row.enabled) << row.typed;
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
  EXPECT_THAT(files.ReadWhole(folder.Dos("kelvo.log")),
              MatchesRegex("[^\t\r\n]+ [^\t\r\n]+\tL\xF6sche Datei...a.txt\r\n"
                           "[^\t\r\n]+ [^\t\r\n]+\t\r\n"));
}

TEST(StatusLog, AFileThatCannotBeWrittenHoldsNothingUp) {
  const TempFolder folder;
  const FileSystem files;
  files.WriteWhole(folder.Dos("kelvo.log"), "old\r\n");
  StatusLog log(files, folder.Dos());
  log.LogEnabled = true;
  files.Faults().FailAt(1);
  EXPECT_NO_THROW(log.StatusChanged("text"));
  files.Faults().FailAt(0);
  EXPECT_EQ(files.ReadWhole(folder.Dos("kelvo.log")), "old\r\n");
}
