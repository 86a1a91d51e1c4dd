#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "install/basScript.h"

class InstallSession;

/// What became of one script of a run, for developers and `kvpk`.
struct StoppedScript {
  std::size_t mod;  // catalogue number of the mod, 1-based; 0 for the end script
  basScript::ScriptStop stop;
};

/// The install run over the catalogue: the scripts of all selected mods in catalogue order, then
/// the end script, then the final message, whatever happened. Does nothing while a run is on.
/// Returns the scripts that stopped early. Fails, with `InstallRunning` still true, if an event
/// during the run leaves fewer mods in the catalogue than it has come to.
std::vector<StoppedScript> RunInstall(InstallSession& session);
