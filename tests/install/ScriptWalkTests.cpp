// The walk over a script's lines: what opens a block, what is an argument, where a jump goes, and
// what the bar shows. `ShellExecute` serves as the probe: it passes on its first argument as
// written, and the further ones behind the game directory.

#include <string>
#include <string_view>
#include <vector>

#include "install/InstallFixture.h"
#include "platform/Failure.h"

namespace {

using Texts = std::vector<std::string>;

class ScriptWalk : public InstallTest {
 protected:
  /// A script with `do0` to `do5` for a block that opens that digit.
  std::size_t RunProbes(std::string script) {
    for (const char digit : std::string_view("012345")) {
      script = Text::Replace(script, Concat("do", digit), Concat("ShellExecute {|", digit, "|}"));
    }
    return Run(script);
  }

  struct Probe {
    std::string script;
    Texts opened;
  };
  void Check(const std::vector<Probe>& probes) {
    for (const Probe& probe : probes) {
      SCOPED_TRACE(probe.script);
      EXPECT_EQ(RunProbes(probe.script), 0U);
      EXPECT_EQ(TakeOpened(), probe.opened);
    }
  }
};

TEST_F(ScriptWalk, OnlyAHeadAloneOnItsLineOpensABlock) {
  Check({
      {"ShellExecute {|a|b|}", {"a", "<game>\\b"}},
      {"shellexecute {|a", {"a"}},
      {"SHELLEXECUTE {|a", {"a"}},
      {"ShellExecute{|a", {}},
      {"ShellExecute  {|a", {}},
      {" ShellExecute {|a", {}},
      {"ShellExecute { |a", {}},
      {"\tShellExecute {|a", {}},
      {"ShellExecute {\t|a", {}},
      {"ShellExecute {\n|a", {}},
      {"ShellExecute { # x|a", {}},
      // In an open block, what is no head is an argument.
      {"ShellExecute {|a|shellexecute{|b", {"a", "<game>\\shellexecute{", "<game>\\b"}},
      {"ShellExecute {|a| ShellExecute {|b", {"a", "<game>\\ShellExecute {", "<game>\\b"}},
      // A head drops the block that is open, with all that it had read.
      {"ShellExecute {|a|ShellExecute {|b|c", {"a", "b", "<game>\\c"}},
      {"Delete {|ShellExecute {|a|}|b", {"a"}},
  });
}

TEST_F(ScriptWalk, CommandsThatDontExistDoNothing) {
  Check({
      {"Format {|c:\\|}|do1", {"1"}},
      {"ShellExecute {|a|Format {|b|}|c|}", {"a", "<game>\\Format {", "<game>\\b"}},
      {"x|y|z|:l|}|}|do1", {"1"}},
  });
}

TEST_F(ScriptWalk, OnlyABraceAloneOnItsLineClosesABlock) {
  Check({
      {"ShellExecute {|}|a", {}},
      {"ShellExecute {|} |a|}|b", {"}", "<game>\\a"}},
      {"ShellExecute {|\t}|a", {"}", "<game>\\a"}},
      {"ShellExecute {|}}|a", {"}}", "<game>\\a"}},
      {"ShellExecute {|}\n|a", {"}\n", "<game>\\a"}},
  });
}

TEST_F(ScriptWalk, ArgumentsAreTrimmedAndTabsShieldThem) {
  const std::vector<std::pair<std::string, Texts>> lines = {
      {"  a b  ", {"a b"}},
      {"a\t", {"a\t"}},
      {"a \t", {"a \t"}},
      {"\t\ta", {"a"}},
      {"  \ta", {"a"}},
      {"\t a ", {" a"}},
      {"\t \ta", {" \ta"}},
      {"\xA0", {"\xA0"}},
      {"a\rb", {"a\rb"}},
      {"a\nb", {"a\nb"}},
      {"a\r", {"a\r"}},
      {":a", {":a"}},
      {"\t", {""}},
      {" \t\t ", {""}},
      // Comments and blank lines are no arguments, unless a tab shields them.
      {"", {}},
      {"   ", {}},
      {"#a", {}},
      {"  ;a", {}},
      {"\t#a", {"#a"}},
      {"\t\t;a", {";a"}},
      {" \t #a", {" #a"}},
  };
  for (const auto& [line, opened] : lines) {
    SCOPED_TRACE(line);
    EXPECT_EQ(Run("ShellExecute {|" + line), 0U);
    EXPECT_EQ(TakeOpened(), opened);
    // What is no argument leaves the first place in the block to the next line.
    EXPECT_EQ(Run("ShellExecute {|" + line + "|z|}"), 0U);
    EXPECT_EQ(TakeOpened().back(), opened.empty() ? "z" : "<game>\\z");
  }
}

TEST_F(ScriptWalk, GotoGoesForwardWhenItsBlockCloses) {
  Check({
      {"Goto {|x|}|do1|:x|do2", {"2"}},
      {"Goto {|Ende \xDC|}|do1|:ENDE \xFC|do2", {"2"}},
      {"Goto {|  x |y|z|}|:y|do1|:z|do2|:x|do3", {"3"}},
      // The search begins at the close: a label in the block itself is an argument.
      {"Goto {|x|:x|}|do1|:x|do2", {"2"}},
      // A head in place of the close holds it off until that block closes.
      {"Goto {|x|ShellExecute {|1|2|}|do3|:x|do4", {"1", "<game>\\2", "4"}},
      {"Goto {|x|Goto {|y|}|:x|do1|:y|do2", {"2"}},
      {"Goto {|x", {}},
      // Labels that aren't found skip the rest.
      {":x|Goto {|x|}|do1", {}},
      {"Goto {|x|}|do1| :x|:x |x|: x|:xx|\t:x|do2", {}},
      {"Goto {|:x|}|:x|do1|::x|do2", {"2"}},
      {"Goto {|x\t|}|:x|do1|:x\t|do2", {"2"}},
      // On the way, heads and closes don't count, and the label's line is outside any block.
      {"Goto {|x|}|ShellExecute {|1|:x|2|}|do3", {"3"}},
      {"Goto {|x|}|Goto {|y|}|:x|do1|:y|do2", {"1", "2"}},
      {"Goto {|x|}|do1|:x|do2|:x|Goto {|y|}|do3|:y|do4", {"2", "4"}},
      // No label, no jump.
      {"Goto {|}|do1", {"1"}},
      {"Goto {|# x|}|do1", {"1"}},
      {"Goto {|\t|}|do1|:|do2", {"1", "2"}},
  });
}

TEST_F(ScriptWalk, IfExistGotoTakesOneOfItsTwoLabels) {
  LayOut({{"game/data/da.txt", "eins\r\n[zwei\r\ndrei"},
          {"game/.h", ""},
          {"game/leer.txt", ""},
          {"start/here/nur_hier.txt", "eins"}});
  const std::string tail = "|}|do0|Goto {|ende|}|:JA|do1|Goto {|ende|}|:nein|do2|:ende";
  const std::vector<std::pair<std::string, std::string>> tests = {
      {"file|data\\da.txt", "1"},
      {"FILE|\\DATA\\DA.TXT", "1"},
      {"file|data", "1"},
      {"file|data\\", "1"},
      {"file|.h", "1"},
      {"file|data\\*.txt", "1"},
      {R"(file|<root>\start\here\nur_hier.txt)", "1"},
      {"file|nur_hier.txt", "2"},
      {"file|data\\fehlt.txt", "2"},
      {"file|fehlt\\da.txt", "2"},
      {"Line|data\\da.txt|EINS", "1"},
      {"line|data\\da.txt|d*", "1"},
      {"line|data\\da.txt|[!a-z]zwei", "1"},
      {"line|data\\da.txt|zwei", "2"},
      {"line|leer.txt|*", "2"},
  };
  for (const auto& [test, opened] : tests) {
    SCOPED_TRACE(test);
    EXPECT_EQ(RunProbes(Concat("IfExistGoto {|", test, "|ja|nein", tail)), 0U);
    EXPECT_EQ(TakeOpened(), Texts{opened});
    // Further lines of the block count for nothing.
    EXPECT_EQ(RunProbes(Concat("IfExistGoto {|", test, "|ja|nein|ende|ende", tail)), 0U);
    EXPECT_EQ(TakeOpened(), Texts{opened});
  }
}

TEST_F(ScriptWalk, IfExistGotoWithLabelsMissing) {
  LayOut({{"game/da", "a"}});
  Check({
      // Without the second label a failed test seeks a lone colon.
      {"IfExistGoto {|file|fehlt|x|}|do1|:x|do2", {}},
      {"IfExistGoto {|file|fehlt|x|}|do1|:x|do2|:|do3", {"3"}},
      {"IfExistGoto {|line|da|b|x|}|do1|:x|do2|:|do3", {"3"}},
      {"IfExistGoto {|file|fehlt|x|\t|}|do1|:|do2", {"2"}},
      // Without the first, there is no jump.
      {"IfExistGoto {|file|da|}|do1|:|do2", {"1", "2"}},
      {"IfExistGoto {|line|da|a|}|do1|:|do2", {"1", "2"}},
      {"IfExistGoto {|file|da|\t|x|}|do1|:x|do2", {"1", "2"}},
      {"IfExistGoto {|file|fehlt|\t|x|}|do1|:x|do2", {"1", "2"}},
      // A kind that doesn't exist does nothing, also behind one that does.
      {"IfExistGoto {|datei|da|x|y|}|do1|:x|:y|do2", {"1", "2"}},
      {"IfExistGoto {|files|fehlt|x|y|}|do1|:x|:y|do2", {"1", "2"}},
      {"IfExistGoto {|file|da|x|y|}|:x|IfExistGoto {|datei|da|z|z|}|do1|:z|do2", {"1", "2"}},
      // The label of a block that was dropped without its close stays until another takes its
      // place.
      {"IfExistGoto {|file|da|x|y|IfExistGoto {|file|fehlt|z|}|do1|:x|do2|:y|do3|:z|do4",
       {"3", "4"}},
      {"IfExistGoto {|file|fehlt|x|y|Goto {|z|}|do1|:x|do2|:y|do3|:z|do4", {"4"}},
  });
}

TEST_F(ScriptWalk, ATestOfLinesThatFailsStopsTheScript) {
  LayOut({{"game/da", "a"}});
  EXPECT_EQ(RunProbes("do1|IfExistGoto {|line|fehlt|a|x|y|}|do2|:x|:y|do3"), 7U);
  EXPECT_EQ(RunProbes("do1|IfExistGoto {|line|da|[a|x|y|}|do2|:x|:y|do3"), 7U);
  EXPECT_EQ(TakeOpened(), (Texts{"1", "1"}));
  EXPECT_EQ(Folder.Read("game/da"), "a");
}

TEST_F(ScriptWalk, TheBarCountsTheLinesThatAreRun) {
  struct Case {
    const char* script;
    std::int32_t max;
    std::int32_t value;
    int events;
  };
  const std::vector<Case> cases = {
      {"", -1, 0, 0},
      {"a", 0, 0, 1},
      {"|", 1, 1, 2},
      {"a|b|", 2, 2, 3},
      {"1|2|3|4|5|6|7|8|9|10", 9, 9, 10},
      {"ShellExecute {|a|# x||}", 4, 4, 5},
      // Three lines of the jump and the one behind the label; nothing in between.
      {"Goto {|x|}|ShellExecute {|1|}|:x|a", 7, 4, 4},
      {"Goto {|x|}|a|b|c", 5, 3, 3},
      // The line that fails takes no step.
      {"a|Delete {|fehlt|}", 3, 2, 2},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.script);
    Host.DoEventsCount = 0;
    Run(testCase.script);
    EXPECT_EQ(Host.ModBar.Max(), testCase.max);
    EXPECT_EQ(Host.ModBar.Value(), testCase.value);
    EXPECT_EQ(Host.DoEventsCount, testCase.events);
  }
}

TEST_F(ScriptWalk, AStopTellsWhereAndWhy) {
  const auto stop = basScript::RunInstallScript(
      Session, "Goto {\r\nx\r\n}\r\nweg\r\n:X\r\nDelete {\r\n\t fehlt \r\n}");
  ASSERT_TRUE(stop);
  EXPECT_EQ(stop->lineNumber, 7U);
  EXPECT_EQ(stop->line, "\t fehlt ");
  EXPECT_NE(stop->cause.find("fehlt"), std::string::npos) << stop->cause;
  EXPECT_FALSE(basScript::RunInstallScript(Session, ""));
}

TEST_F(ScriptWalk, TwoSessionsDontDisturbEachOther) {
  TempFolder otherFolder;
  for (const char* folder : {"game", "temp"}) otherFolder.MakeFolder(folder);
  otherFolder.Write("game/b.txt", "b\r\n");
  FileSystem otherFiles;
  RecordingHost otherHost;
  InstallSession other(otherFiles, otherHost, Opener, otherFolder.Dos("temp"));
  other.SAInstallDir = otherFolder.Dos("game");
  LayOut({{"game/a.txt", "a\r\n"}});
  // The other script runs within each line of this one, and once it fails.
  int runs = 0;
  Host.OnDoEvents = [&] {
    ++runs;
    const auto stop = basScript::RunInstallScript(
        other, Lines(runs == 3 ? "Delete {|x|}" : "AddLine {|b.txt|b|n|}|Goto {|x|}|:y"));
    EXPECT_EQ(stop.has_value(), runs == 3);
  };
  EXPECT_EQ(Run("AddLine {|a.txt|a|1|2|}|Goto {|y|}|ShellExecute {|:y"), 0U);
  EXPECT_EQ(Folder.Read("game/a.txt"), "a\r\n1\r\n2\r\n");
  EXPECT_EQ(Host.Statuses, Texts(2,
                                 "F\xFCge Zeile hinzu..."
                                 "a.txt"));
  EXPECT_EQ(Host.ModBar.Max(), 10);
  EXPECT_EQ(runs, 9);
  std::string expected = "b\r\n";
  for (int i = 1; i < runs; ++i) expected += "n\r\n";
  EXPECT_EQ(otherFolder.Read("game/b.txt"), expected);
}

}  // namespace
