#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "install/ScriptCommand.h"

/// What a line of a script is to the walk.
struct ScriptStep {
  enum class Kind : std::uint8_t {
    kHead,      ///< opened `command`'s block; a block that was open is dropped
    kClose,     ///< closed the block
    kNothing,   ///< a comment or a blank line
    kArgument,  ///< `argument`
  };
  /// The tests of `IfExistGoto`, each on the path that stands at index 1.
  enum class Test : std::uint8_t { kNone, kFile, kEntry, kLine };

  Kind kind = Kind::kNothing;
  const ScriptCommand* command = nullptr;  ///< of the open block; null outside any
  std::int32_t index = 0;                  ///< of the argument within its block
  std::string_view argument;               ///< trimmed, as the command sees it
  ArgumentRole role;                       ///< of the argument
  /// The test that this line makes due. Its result goes to `ScriptWalk::DecideJump`.
  Test test = Test::kNone;
};

/// The one reading of the script language: lines go in, what they mean comes out. Knows no file,
/// no archive and no host. Whoever runs a script asks `PassesOver` ahead of `Take` for each line;
/// whoever wants to see all that a script could do leaves it out and sees each block that any run
/// can come to, read as that run reads it.
///
/// A line that is a head opens a block, a lone "}" closes it, and each line between is an argument.
/// A jump goes forward to a line of a colon and its label, and begins only when its block closes.
class ScriptWalk {
 public:
  /// The lines of a script. A lone CR or LF stays in its line; text behind the last CR LF is a last
  /// line, even if empty; an empty script has no lines. The views point into `script`.
  static std::vector<std::string_view> Lines(std::string_view script);

  /// What a line that is neither head nor close gives the open block's command; nothing for a
  /// comment or a blank line. A tab shields the rest of a line from being looked at: that's how a
  /// script gets at a text that begins with a comment sign or a blank.
  static std::optional<std::string_view> ArgumentOf(std::string_view line);

  /// Whether a pending jump skips this line, which is then neither run nor counted as run.
  bool PassesOver(std::string_view line);

  /// Reads a line. What comes out points into `line`.
  ScriptStep Take(std::string_view line);

  /// The result of the test that the last line made due: which label the jump goes to.
  void DecideJump(bool found) { TakeTarget = found; }

 private:
  ScriptStep TakeArgument(std::string_view argument);
  void TakeGoto(const ScriptStep& step);
  void TakeIfExistGoto(ScriptStep& step);

  const ScriptCommand* command_ = nullptr;  // the open block's; null when no block is open
  std::int32_t ArgIndex = 0;                // how far the open block has come
  ScriptStep::Test TestKind = ScriptStep::Test::kNone;
  bool Seeking = false;     // a jump is pending: lines are skipped until its label
  std::string TargetLabel;  // the jump's first label
  std::string ElseLabel;    // the jump's second label
  bool TakeTarget = false;  // the jump goes to `TargetLabel`; otherwise to `ElseLabel`
};

/// Hands each argument of a script to `take`, jumped over or not, with the 1-based number of its
/// line. The views of the step point into `script`.
template <typename Take>
void ForEachArgument(std::string_view script, const Take& take) {
  ScriptWalk walk;
  std::size_t line = 0;
  for (const std::string_view text : ScriptWalk::Lines(script)) {
    ++line;
    const ScriptStep step = walk.Take(text);
    if (step.kind == ScriptStep::Kind::kArgument) take(step, line);
  }
}
