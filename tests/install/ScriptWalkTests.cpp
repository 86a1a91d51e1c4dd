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

class RunScript : public InstallTest {
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

TEST_F(RunScript, HeadsAndBracesAloneOnTheirLineOpenAndCloseBlocks) {
  Check({
      {"ShellExecute {|a|b|}", {"a", "<game>\\b"}},
      {"shellexecute {|a", {"a"}},
      {"ShellExecute{|a", {}},
      {" ShellExecute {|a", {}},
      {"ShellExecute {\t|a", {}},
      {"ShellExecute { # x|a", {}},
      // In an open block, what is no head is an argument.
      {"ShellExecute {|a|shellexecute{|b", {"a", "<game>\\shellexecute{", "<game>\\b"}},
      // A head drops the block that is open, with all that it had read.
      {"ShellExecute {|a|ShellExecute {|b|c", {"a", "b", "<game>\\c"}},
      // Commands that don't exist do nothing.
      {"x|y|z|:l|}|}|Format {|c:\\|}|do1", {"1"}},
      {"ShellExecute {|a|Format {|b|}|c|}", {"a", "<game>\\Format {", "<game>\\b"}},
      {"Delete {|ShellExecute {|a|}|b", {"a"}},
      // Only a brace alone on its line closes a block.
      {"ShellExecute {|}|a", {}},
      {"ShellExecute {|} |a|}|b", {"}", "<game>\\a"}},
      {"ShellExecute {|\t}|a", {"}", "<game>\\a"}},
  });
}

TEST_F(RunScript, ArgumentsAreTrimmedAndTabsShieldThem) {
  const std::vector<std::pair<std::string, Texts>> lines = {
      {"  a b  ", {"a b"}},
      {"a\t", {"a\t"}},
      {"\t a ", {" a"}},
      {"\xA0", {"\xA0"}},
      {"a\nb", {"a\nb"}},
      {"\t", {""}},
      // Comments and blank lines are no arguments, unless a tab shields them.
      {"", {}},
      {"#a", {}},
      {"  ;a", {}},
      {"\t#a", {"#a"}},
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

TEST_F(RunScript, GotoGoesForwardWhenItsBlockCloses) {
  Check({
      {"Goto {|x|}|do1|:x|do2", {"2"}},
      {"Goto {|  x |y|z|}|:y|do1|:z|do2|:x|do3", {"3"}},
      // The search begins at the close: a label in the block itself is an argument.
      {"Goto {|x|:x|}|do1|:x|do2", {"2"}},
      // A head in place of the close holds it off until that block closes.
      {"Goto {|x|ShellExecute {|1|2|}|do3|:x|do4", {"1", "<game>\\2", "4"}},
      // Labels that aren't found skip the rest.
      {":x|Goto {|x|}|do1", {}},
      {"Goto {|x|}|do1| :x|:x |x|: x|:xx|\t:x|do2", {}},
      // On the way, heads and closes don't count, and the label's line is outside any block.
      {"Goto {|x|}|ShellExecute {|1|:x|2|}|do3", {"3"}},
      {"Goto {|x|}|Goto {|y|}|:x|do1|:y|do2", {"1", "2"}},
      {"Goto {|x|}|do1|:x|do2|:x|Goto {|y|}|do3|:y|do4", {"2", "4"}},
      // No label, no jump.
      {"Goto {|}|do1", {"1"}},
  });
}

TEST_F(RunScript, IfExistGotoTakesOneOfItsTwoLabels) {
  LayOut({{"game/data/da.txt", "eins\r\n[zwei\r\ndrei"},
          {"game/leer.txt", ""},
          {"start/here/nur_hier.txt", "eins"}});
  const std::string tail = "|}|do0|Goto {|ende|}|:JA|do1|Goto {|ende|}|:nein|do2|:ende";
  const std::vector<std::pair<std::string, std::string>> tests = {
      {"file|data\\*.txt", "1"},
      {"FILE|DATA", "1"},
      {R"(file|<root>\start\here\nur_hier.txt)", "1"},
      {"file|nur_hier.txt", "2"},
      {"file|data\\fehlt.txt", "2"},
      {"Line|data\\da.txt|EINS", "1"},
      {"line|data\\da.txt|[!a-z]zwei", "1"},
      {"line|data\\da.txt|zwei", "2"},
      {"line|leer.txt|*", "2"},
  };
  for (const auto& [test, opened] : tests) {
    SCOPED_TRACE(test);
    EXPECT_EQ(RunProbes(Concat("IfExistGoto {|", test, "|ja|nein", tail)), 0U);
    EXPECT_EQ(TakeOpened(), Texts{opened});
  }
}

TEST_F(RunScript, IfExistGotoWithLabelsMissing) {
  LayOut({{"game/da", "a"}});
  Check({
      // Without the second label a failed test seeks a lone colon.
      {"IfExistGoto {|file|fehlt|x|}|do1|:x|do2|:|do3", {"3"}},
      // Without the first, there is no jump.
      {"IfExistGoto {|file|da|}|do1|:|do2", {"1", "2"}},
      // A kind that doesn't exist does nothing, also behind one that does.
      {"IfExistGoto {|datei|da|x|y|}|do1|:x|:y|do2", {"1", "2"}},
      {"IfExistGoto {|file|da|x|y|}|:x|IfExistGoto {|datei|da|z|z|}|do1|:z|do2", {"1", "2"}},
      // The label of a block that was dropped without its close stays until another takes its
      // place.
      {"IfExistGoto {|file|da|x|y|IfExistGoto {|file|fehlt|z|}|do1|:x|do2|:y|do3|:z|do4",
       {"3", "4"}},
  });
}

TEST_F(RunScript, ATestOfLinesThatFailsStopsTheScript) {
  LayOut({{"game/da", "a"}});
  EXPECT_EQ(RunProbes("do1|IfExistGoto {|line|fehlt|a|x|y|}|do2|:x|:y|do3"), 7U);
  EXPECT_EQ(RunProbes("do1|IfExistGoto {|line|da|[a|x|y|}|do2|:x|:y|do3"), 7U);
  EXPECT_EQ(TakeOpened(), (Texts{"1", "1"}));
  EXPECT_EQ(Folder.Read("game/da"), "a");
}

TEST_F(RunScript, TheBarCountsTheLinesThatAreRun) {
  struct Case {
    const char* script;
    std::int32_t max, value, events;
  };
  const std::vector<Case> cases = {
      {"", -1, 0, 0},
      {"|", 1, 1, 2},
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

}  // namespace
