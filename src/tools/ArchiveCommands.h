#pragma once

#include "tools/Report.h"

namespace CLI {
class App;
}

/// Adds `list`, `add`, `remove`, `export` and `rebuild`. The one that the command line asks for
/// is put into `chosen`.
void AddArchiveCommands(CLI::App& app, Action& chosen);
