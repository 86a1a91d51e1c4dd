#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

class InstallSession;

/// The install script language.
///
/// A script's lines are walked once, from top to bottom. A line that is a block head, such as
/// "Copy {", opens a block of one of sixteen commands; each further line is an argument and takes
/// effect at once; "}" closes the block. `IfExistGoto` and `Goto` skip forward to a line of a
/// colon and a label, and nothing ever goes back.
namespace basScript {

/// Where and why a script stopped early, for developers; the program itself never looks at it.
struct ScriptStop {
  std::size_t lineNumber;  // 1-based
  std::string line;        // as written
  std::string cause;
};

/// Whether a line opens a block: a head, in any case, with nothing before or behind it.
bool IsHead(std::string_view line);

/// What a line that is neither head nor end gives the open block's command; nothing for a comment
/// or a blank line. A tab shields the rest of a line from being looked at: that's how a script gets
/// at a text that begins with a comment sign or a blank.
std::optional<std::string_view> ArgumentOf(std::string_view line);

/// Runs one script, lines separated by CR LF. A failure ends it at once, silently; what was done
/// stays done. Returns nothing if it ran to its end.
std::optional<ScriptStop> RunInstallScript(InstallSession& session, std::string_view script);

}  // namespace basScript
