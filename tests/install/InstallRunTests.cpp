// The run over the catalogue: which scripts run, what the host is told, and what goes on after a
// failure or an event in between.

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/basDebugLog.h"
#include "install/InstallFixture.h"
#include "install/InstallRun.h"

namespace {

using Texts = std::vector<std::string>;

constexpr const char* kDone = "message Installation der Modifikationen abgeschlossen.";

class InstallRun : public InstallTest {
 protected:
  void AddMod(const char* name, const char* script, bool selected = true) {
    udtMod mod;
    mod.Name = name;
    mod.InstallScript = Lines(script);
    mod.Selected = selected;
    Session.Pack.Mods.push_back(mod);
  }
  /// Mod and line of each failure.
  std::vector<std::pair<std::size_t, std::size_t>> RunAll() {
    std::vector<std::pair<std::size_t, std::size_t>> stops;
    for (const auto& [mod, failure] : RunInstall(Session)) {
      stops.emplace_back(mod, failure.lineNumber);
    }
    return stops;
  }
};

TEST_F(InstallRun, RunsTickedModsInOrderAndThenTheEndScript) {
  LayOut({{"game/t.txt", "a\r\n"}});
  AddMod("Erste", "AddLine {|t.txt|a|1|}");
  AddMod("Zweite", "AddLine {|t.txt|a|2|}", false);
  AddMod("Dritte \xDC", "ReplaceLine {|t.txt|1|3|}");
  Session.Pack.EndScript = Lines("AddLine {|t.txt|3|Ende|}");
  std::vector<bool> running;
  Host.OnDoEvents = [&] {
    running.push_back(Session.InstallRunning);
    EXPECT_TRUE(RunInstall(Session).empty()) << "a second run inside the first does nothing";
  };
  Host.OnFinalMessage = [&] { EXPECT_FALSE(Session.InstallRunning); };
  EXPECT_TRUE(RunAll().empty());
  EXPECT_EQ(Folder.Read("game/t.txt"), "a\r\n3\r\nEnde\r\n");
  EXPECT_EQ(Host.Calls, (Texts{"total max 3", "total 1", "status Installiere Mod: Erste",
                               "show page", "status F\xFCge Zeile hinzu...t.txt", "total 2",
                               "status Installiere Mod: Zweite", "total 3",
                               "status Installiere Mod: Dritte \xDC", "show page",
                               "status F\xFCge Zeile hinzu...t.txt", kDone, "hide page"}));
  EXPECT_EQ(running, std::vector<bool>(15, true));
}

TEST_F(InstallRun, AScriptThatFailsStopsItselfAlone) {
  AddMod("Gut", "ShellExecute {|1");
  AddMod("Schlecht", "ShellExecute {|2|}|Delete {|fehlt|}|ShellExecute {|3");
  AddMod("Auch gut", "ShellExecute {|4");
  Session.Pack.EndScript = Lines("Delete {|fehlt");
  EXPECT_EQ(RunAll(), (std::vector<std::pair<std::size_t, std::size_t>>{{2, 5}, {0, 2}}));
  EXPECT_EQ(TakeOpened(), (Texts{"1", "2", "4"}));
  EXPECT_EQ(std::count(Host.Calls.begin(), Host.Calls.end(), kDone), 1);
}

/// An event may open another pack while the run goes on.
TEST_F(InstallRun, ACatalogueThatShrinksEndsTheRun) {
  AddMod("Erste", "ShellExecute {|1|2|}");
  AddMod("Zweite", "ShellExecute {|3|}");
  Session.Pack.EndScript = Lines("ShellExecute {|Ende");
  Host.OnDoEvents = [&] { Session.Pack = Catalogue(); };
  const std::optional<std::string> cause = CauseOf("test", [&] { RunInstall(Session); });
  EXPECT_TRUE(cause);
  // The script in hand runs to its end; the click's own failure leaves the run marked as on.
  EXPECT_EQ(TakeOpened(), (Texts{"1", "<game>\\2"}));
  EXPECT_TRUE(Session.InstallRunning);
  EXPECT_EQ(std::count(Host.Calls.begin(), Host.Calls.end(), kDone), 0);
}

}  // namespace
