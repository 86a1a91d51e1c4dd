#include "install/InstallRun.h"

#include "core/basDebugLog.h"
#include "install/InstallSession.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"

std::vector<ScriptToRun> ScriptsToRun(const Catalogue& catalogue) {
  std::vector<ScriptToRun> scripts;
  for (std::size_t i = 1; i < catalogue.Mods.size(); ++i) {
    if (catalogue.Mods[i].Selected) scripts.push_back({i, catalogue.Mods[i].InstallScript});
  }
  scripts.push_back({0, catalogue.EndScript});
  return scripts;
}

std::vector<RunFailure> RunInstall(InstallSession& session) {
  std::vector<RunFailure> failures;
  if (session.InstallRunning) return failures;
  const auto runScript = [&](std::size_t mod, const std::string& text) {
    session.ModNumber = mod;
    for (basScript::LineFailure& failure : basScript::RunInstallScript(session, text)) {
      failures.push_back({mod, std::move(failure)});
    }
  };

  session.InstallRunning = true;
  const std::size_t last = session.Pack.Mods.size() - 1;
  session.Host.SetTotalProgressMax(static_cast<std::int32_t>(last));
  for (std::size_t i = 1; i <= last; ++i) {
    session.Host.SetTotalProgress(static_cast<std::int32_t>(i));
    // Another pack, with fewer mods, may have been opened by an event: that ends the run.
    if (i >= session.Pack.Mods.size()) {
      Fail("install run: mod ", i, " of ", last, " is gone, the pack now has ",
           session.Pack.Mods.size() - 1);
    }
    const udtMod& mod = session.Pack.Mods[i];
    session.SetStatus("Installiere Mod: " + mod.Name);
    if (mod.Selected) {
      session.Host.ShowProgressPage();
      runScript(i, mod.InstallScript);
    }
  }
  runScript(0, session.Pack.EndScript);
  // A cut of power behind the message must not make it a lie.
  const auto unsafe = CauseOf("basScript.SyncChanges", [&] { session.Files.SyncChanges(); });
  if (unsafe) failures.push_back({0, {0, "", *unsafe, false}});
  session.InstallRunning = false;
  session.Host.ShowFinalMessage("Installation der Modifikationen abgeschlossen.");
  session.Host.HideProgressPage();
  return failures;
}
