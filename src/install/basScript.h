#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class InstallSession;

/// Runs install scripts. What their lines mean is `ScriptWalk`'s; what each command does stands
/// with the handlers that `ScriptCommands` names.
namespace basScript {

/// What went wrong at one line, for developers; the program itself never looks at it.
struct LineFailure {
  std::size_t lineNumber;  // 1-based
  std::string line;        // as written
  std::string cause;
  bool endedScript;  // false: an edit or a payload failed, and the script went on
};

/// Runs one script, lines separated by CR LF. A failure ends it at once, silently; what was done
/// stays done. Returns what failed; if a failure ended the script, it is the last one.
std::vector<LineFailure> RunInstallScript(InstallSession& session, std::string_view script);

}  // namespace basScript
