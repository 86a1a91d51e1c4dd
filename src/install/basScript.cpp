#include "install/basScript.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "core/basDebugLog.h"
#include "install/InstallSession.h"
#include "install/ScriptState.h"
#include "install/ScriptWalk.h"
#include "install/basTextEdit.h"
#include "platform/FileSystem.h"

namespace {

/// One script's run.
class ScriptRun {
 public:
  ScriptRun(InstallSession& session, std::string_view script)
      : session_(session), script_(script), state_(session) {}

  /// Walks the lines from top to bottom. Every failure that ends the script is passed on.
  void Run() {
    const std::vector<std::string_view> lines = ScriptWalk::Lines(script_);
    session_.BeginModProgress(static_cast<std::int32_t>(lines.size()) - 1);
    for (const std::string_view line : lines) {
      ++session_.LineNumber;
      line_ = line;
      state_.Unpacked = false;
      if (walk_.PassesOver(line)) continue;
      RunStep(walk_.Take(line));
      NoteSetbacks();
      session_.Host.DoEvents();
      session_.StepModProgress();
    }
  }

  /// What failed in the run, which `end` has ended if there is one.
  std::vector<basScript::LineFailure> TakeFailures(const std::optional<std::string>& end) {
    NoteSetbacks();
    if (end) Note(*end, true);
    return std::move(failures_);
  }

 private:
  void RunStep(const ScriptStep& step) {
    if (step.kind != ScriptStep::Kind::kArgument || step.command == nullptr) return;
    if (step.index == 0) {
      if (step.command->onFirst != nullptr) step.command->onFirst(state_, step.argument);
    } else if (step.index == 1) {
      state_.SecondArg = step.argument;
    } else if (step.command->onFurther != nullptr) {
      step.command->onFurther(state_, step.argument);
    }
    if (step.test != ScriptStep::Test::kNone) walk_.DecideJump(Passes(step));
  }

  /// The test of an `IfExistGoto` block.
  bool Passes(const ScriptStep& step) {
    const std::string path = session_.ResolvePath(state_.SecondArg);
    if (step.test == ScriptStep::Test::kFile) {
      return !session_.Files.FindFirst(path, kFindHidden | kFindSystem | kFindFolders).empty();
    }
    if (step.test == ScriptStep::Test::kEntry) {
      session_.IMG.Load(path);
      return session_.IMG.ExistsInIMG(step.argument);
    }
    return basTextEdit::LineExists(session_.Files, path, step.argument,
                                   [this] { session_.Host.DoEvents(); });
  }

  void NoteSetbacks() {
    for (const std::string& cause : std::exchange(state_.Setbacks, {})) Note(cause, false);
  }
  void Note(const std::string& cause, bool endedScript) {
    failures_.push_back({session_.LineNumber, std::string(line_), cause, endedScript});
  }

  InstallSession& session_;
  const std::string script_;  // a copy: the catalogue may change while events run
  std::string_view line_;
  ScriptWalk walk_;
  ScriptState state_;
  std::vector<basScript::LineFailure> failures_;
};

}  // namespace

std::vector<basScript::LineFailure> basScript::RunInstallScript(InstallSession& session,
                                                                std::string_view script) {
  session.LineNumber = 0;
  ScriptRun run(session, script);
  return run.TakeFailures(CauseOf("basScript.RunInstallScript", [&] { run.Run(); }));
}
