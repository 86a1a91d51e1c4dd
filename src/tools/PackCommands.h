#pragma once

#include "tools/Report.h"

namespace CLI {
class App;
}

/// Adds `cipher`, `info`, `build` and `unpack`. The one that the command line asks for is put into
/// `chosen`.
void AddPackCommands(CLI::App& app, Action& chosen);
