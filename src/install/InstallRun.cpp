#include "install/InstallRun.h"

#include "install/InstallSession.h"

std::vector<StoppedScript> RunInstall(InstallSession& session) {
  std::vector<StoppedScript> stopped;
  if (session.InstallRunning) return stopped;
  const auto runScript = [&](std::size_t mod, const std::string& script) {
    if (auto stop = basScript::RunInstallScript(session, script)) {
      stopped.push_back({mod, std::move(*stop)});
    }
  };

  session.InstallRunning = true;
  const std::vector<udtMod>& mods = session.Pack.Mods;
  session.Host.SetTotalProgressMax(static_cast<std::int32_t>(mods.size()) - 1);
  for (std::size_t i = 1; i < mods.size(); ++i) {
    session.Host.SetTotalProgress(static_cast<std::int32_t>(i));
    session.SetStatus("Installiere Mod: " + mods[i].Name);
    if (mods[i].Selected) {
      session.Host.ShowProgressPage();
      runScript(i, mods[i].InstallScript);
    }
  }
  runScript(0, session.Pack.EndScript);
  session.InstallRunning = false;
  session.Host.ShowFinalMessage("Installation der Modifikationen abgeschlossen.");
  session.Host.HideProgressPage();
  return stopped;
}
