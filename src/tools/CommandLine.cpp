#include "tools/CommandLine.h"

#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "core/basDebugLog.h"
#include "platform/WantedStop.h"
#include "tools/ArchiveCommands.h"
#include "tools/InstallCommands.h"
#include "tools/PackCommands.h"
#include "tools/Report.h"

namespace {

/// Runs what the command line asked for. Each failure is one line on stderr.
int Run(const Action& chosen) {
  try {
    return chosen();
  } catch (const UsageError& error) {
    PrintError(error.what());
    return ExitStatus::kUsage;
  } catch (const WantedStop& stop) {
    PrintError("stopped before anything was changed");
    return ExitStatus::OfStop(stop);
  } catch (const std::exception& failure) {
    PrintError(failure.what());
    return ExitStatus::kUnusable;
  }
}

/// `status`, unless what was printed for a command that is done got lost.
int AfterPrinting(int status) {
  std::cout.flush();
  if (std::cout || status != ExitStatus::kDone) return status;
  PrintError("standard output can't be written");
  return ExitStatus::kUnusable;
}

}  // namespace

int RunKvpk(int argc, char** argv) {
  basDebugLog::SetRecorder(LogRecorder());
  CLI::App app("Makes, looks into and installs KELVO mod packs, and edits IMG archives.", "kvpk");
  app.set_version_flag("--version", "kvpk " KELVO_VERSION);
  // The same on every system: a slash begins no option.
  app.allow_windows_style_options(false);
  app.require_subcommand(1);
  app.footer(
      "Exit status: 0 done, 1 the input can't be used, 2 wrong usage, 3 something in a "
      "script failed, 130 stopped by Ctrl-C, 143 by a signal to end.");

  Action chosen;
  AddArchiveCommands(app, chosen);
  AddPackCommands(app, chosen);
  AddInstallCommands(app, chosen);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ExitStatus::kDone : ExitStatus::kUsage;
  }
  return AfterPrinting(Run(chosen));
}
