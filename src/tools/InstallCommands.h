#pragma once

#include "tools/Report.h"

namespace CLI {
class App;
}

/// Adds `script` and `install`. The one that the command line asks for is put into `chosen`.
void AddInstallCommands(CLI::App& app, Action& chosen);
