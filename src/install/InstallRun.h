#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "install/basScript.h"

class InstallSession;
struct Catalogue;

/// What went wrong in one script of a run, for developers and `kvpk`.
struct RunFailure {
  std::size_t mod;  // catalogue number of the mod, 1-based; 0 for the end script
  basScript::LineFailure failure;
};

/// A script that a run will come to.
struct ScriptToRun {
  std::size_t mod;   // catalogue number, 1-based; 0 for the end script
  std::string text;  // a copy: the catalogue may change while events run

  bool operator==(const ScriptToRun&) const = default;
};

/// The scripts of the ticked mods in catalogue order, then the end script.
std::vector<ScriptToRun> ScriptsToRun(const Catalogue& catalogue);

/// The install run over the catalogue: the scripts of all selected mods in catalogue order, then
/// the end script, then the final message, whatever happened. Does nothing while a run is on.
/// Returns what failed in the scripts. Fails, with `InstallRunning` still true, if an event
/// during the run leaves fewer mods in the catalogue than it has come to.
std::vector<RunFailure> RunInstall(InstallSession& session);
