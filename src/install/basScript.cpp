#include "install/basScript.h"

#include <algorithm>
#include <array>

#include "core/basDebugLog.h"
#include "install/InstallSession.h"
#include "install/ScriptRun.h"
#include "install/basTextEdit.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace basScript {

bool IsHead(std::string_view line) {
  return ScriptRun::IsHead(line);
}

std::optional<std::string_view> ArgumentOf(std::string_view line) {
  std::string_view argument = Text::Trim(line);
  if (argument.empty() || argument.starts_with('#') || argument.starts_with(';')) {
    return std::nullopt;
  }
  argument.remove_prefix(std::min(argument.find_first_not_of('\t'), argument.size()));
  return argument;
}

std::optional<ScriptStop> RunInstallScript(InstallSession& session, std::string_view script) {
  ScriptRun run(session, script);
  const auto cause = Trapped("basScript.RunInstallScript", [&] { run.Run(); });
  if (!cause) return std::nullopt;
  return ScriptStop{run.LineNumber(), std::string(run.Line()), *cause};
}

}  // namespace basScript

namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// The lines of a script. A lone CR or LF stays in its line; text behind the last CR LF is a last
/// line, even if empty; an empty script has no lines.
std::vector<std::string_view> SplitLines(std::string_view script) {
  std::vector<std::string_view> lines;
  if (script.empty()) return lines;
  for (;;) {
    const std::size_t end = script.find(kLineEnd);
    lines.push_back(script.substr(0, end));
    if (end == std::string_view::npos) return lines;
    script.remove_prefix(end + kLineEnd.size());
  }
}

}  // namespace

const std::vector<ScriptRun::Command>& ScriptRun::Commands() {
  using S = ScriptRun;
  static const std::vector<Command> commands = {
      {"AddLine {", 0, &S::HoldResolvedPath, &S::AddLine},
      {"RemoveLine {", 0, &S::HoldResolvedPath, &S::RemoveLine},
      {"ReplaceLine {", 0, &S::HoldResolvedPath, &S::ReplaceLine},
      {"AddIMG {", 0, &S::LoadArchive, &S::AddIMG},
      {"RemoveIMG {", 0, &S::LoadArchive, &S::RemoveIMG},
      {"ReplaceIMG {", 0, &S::LoadArchive, &S::ReplaceIMG},
      {"RebuildIMG {", 0, &S::RebuildFirstArchive, &S::RebuildIMG},
      {"Copy {", 0, &S::HoldRawPath, &S::Copy},
      {"Move {", 0, &S::HoldRawPath, &S::Move},
      {"Delete {", 2, &S::Ignore, &S::Delete},
      {"Rename {", 0, &S::HoldRawPath, &S::Rename},
      {"CreateFolder {", 0, &S::HoldRawPath, &S::CreateFolder},
      {"RemoveFolder {", 0, &S::HoldRawPath, &S::RemoveFolder},
      {"ShellExecute {", 0, &S::OpenFirstThing, &S::ShellExecute},
      {"IfExistGoto {", 0, &S::ChooseTest, &S::IfExistGoto},
      {"Goto {", 0, &S::SeekTarget, &S::Ignore},
  };
  return commands;
}

ScriptRun::ScriptRun(InstallSession& session, std::string_view script)
    : session_(session), script_(script), lines_(SplitLines(script_)) {}

void ScriptRun::Run() {
  session_.Host.SetModProgressMax(static_cast<std::int32_t>(lines_.size()) - 1);
  session_.Host.SetModProgress(0);
  for (const std::string_view line : lines_) {
    ++lineNumber_;
    line_ = line;
    Unpacked = false;
    if (command_ == nullptr && Seeking && SeekLabel(line)) continue;
    RunLine(line);
    session_.Host.DoEvents();
    session_.Host.SetModProgress(session_.Host.ModProgress() + 1);
  }
}

/// A pending jump begins when its block has closed, and not before: packs rely on that, and put
/// lines behind the one that asks for the jump. Returns whether the line is passed over. The line
/// of the label itself is passed over too.
bool ScriptRun::SeekLabel(std::string_view line) {
  if (TargetLabel.empty()) {
    Seeking = false;
    return false;
  }
  if (Text::EqualsIgnoringCase(line, ":" + (TakeTarget ? TargetLabel : ElseLabel))) {
    Seeking = false;
    TargetLabel.clear();
    ElseLabel.clear();
  }
  return true;
}

const ScriptRun::Command* ScriptRun::CommandOf(std::string_view head) {
  const auto found = std::find_if(
      Commands().begin(), Commands().end(),
      [&](const Command& command) { return Text::EqualsIgnoringCase(head, command.head); });
  return found == Commands().end() ? nullptr : &*found;
}

/// A head drops a block that is still open: blocks don't nest.
bool ScriptRun::OpenBlock(std::string_view line) {
  const Command* const found = CommandOf(line);
  if (found == nullptr) return false;
  command_ = found;
  ArgIndex = found->firstArgIndex;
  return true;
}

void ScriptRun::RunLine(std::string_view line) {
  if (OpenBlock(line)) return;
  if (line == "}") {
    command_ = nullptr;
    ArgIndex = 0;
    return;
  }
  const std::optional<std::string_view> argument = basScript::ArgumentOf(line);
  if (!argument) return;
  Dispatch(*argument);
  ++ArgIndex;
}

void ScriptRun::Dispatch(std::string_view argument) {
  if (ArgIndex == 1) {
    SecondArg = argument;
  } else if (command_ != nullptr) {
    const Handler handler = ArgIndex == 0 ? command_->onFirstLine : command_->onFurtherLine;
    (this->*handler)(argument);
  }
}

void ScriptRun::Ignore(std::string_view /*line*/) {}

void ScriptRun::HoldResolvedPath(std::string_view line) {
  FirstArg = session_.ResolvePath(line);
}

void ScriptRun::HoldRawPath(std::string_view line) {
  RawFirstArg = line;
  FirstArg = line;
  ArgIndex = 1;  // there is no second argument: each further line is handled alike
}

void ScriptRun::SeekTarget(std::string_view line) {
  Seeking = true;
  TargetLabel = line;
  TakeTarget = true;
}

void ScriptRun::ChooseTest(std::string_view line) {
  constexpr std::array<std::string_view, 3> kKinds = {"file", "img", "line"};
  TakeTarget = false;
  const auto kind = std::find_if(kKinds.begin(), kKinds.end(), [&](std::string_view word) {
    return Text::EqualsIgnoringCase(line, word);
  });
  TestKind = kind == kKinds.end() ? 0 : static_cast<int>(kind - kKinds.begin()) + 1;
}

/// Line 3 runs the test; the jump's first label stands on the same line for "file", on line 4 for
/// the others, and the second label behind it.
void ScriptRun::IfExistGoto(std::string_view line) {
  if (TestKind == 0) return;
  if (ArgIndex == 2) TakeTarget = RunTest(line);
  const std::int32_t targetIndex = TestKind == 1 ? 2 : 3;
  if (ArgIndex == targetIndex) {
    TargetLabel = line;
    Seeking = true;
  } else if (ArgIndex == targetIndex + 1) {
    ElseLabel = line;
  }
}

bool ScriptRun::RunTest(std::string_view line) {
  const std::string path = session_.ResolvePath(SecondArg);
  if (TestKind == 1) {
    return !session_.Files.FindFirst(path, kFindHidden | kFindSystem | kFindFolders).empty();
  }
  if (TestKind == 2) {
    session_.IMG.Load(std::string(path));
    return session_.IMG.ExistsInIMG(line);
  }
  return basTextEdit::LineExists(session_.Files, path, line);
}
