#include "install/ScriptWalk.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Text.h"

namespace {

constexpr std::string_view kLineEnd = "\r\n";

using Content = ArgumentRole::Content;
using Test = ScriptStep::Test;

Test TestOf(std::string_view kind) {
  constexpr std::array<std::string_view, 3> kKinds = {"file", "img", "line"};
  const auto found = std::find_if(kKinds.begin(), kKinds.end(), [&](std::string_view word) {
    return Text::EqualsIgnoringCase(kind, word);
  });
  constexpr std::array<Test, 4> kTests = {Test::kFile, Test::kEntry, Test::kLine, Test::kNone};
  return kTests.at(static_cast<std::size_t>(found - kKinds.begin()));
}

}  // namespace

std::vector<std::string_view> ScriptWalk::Lines(std::string_view script) {
  std::vector<std::string_view> lines;
  if (script.empty()) return lines;
  for (;;) {
    const std::size_t end = script.find(kLineEnd);
    lines.push_back(script.substr(0, end));
    if (end == std::string_view::npos) return lines;
    script.remove_prefix(end + kLineEnd.size());
  }
}

std::optional<std::string_view> ScriptWalk::ArgumentOf(std::string_view line) {
  std::string_view argument = Text::Trim(line);
  if (argument.empty() || argument.starts_with('#') || argument.starts_with(';')) {
    return std::nullopt;
  }
  argument.remove_prefix(std::min(argument.find_first_not_of('\t'), argument.size()));
  return argument;
}

/// A pending jump begins when its block has closed, and not before: packs rely on that, and put
/// lines behind the one that asks for the jump. The line of the label itself is passed over too.
bool ScriptWalk::PassesOver(std::string_view line) {
  if (command_ != nullptr || !Seeking) return false;
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

ScriptStep ScriptWalk::Take(std::string_view line) {
  // A head drops a block that is still open: blocks don't nest.
  if (const ScriptCommand* const opened = CommandOf(line)) {
    command_ = opened;
    ArgIndex = opened->firstArgIndex;
    return {ScriptStep::Kind::kHead, opened, ArgIndex, {}, {}};
  }
  if (line == "}") {
    const ScriptCommand* const closed = std::exchange(command_, nullptr);
    return {ScriptStep::Kind::kClose, closed, std::exchange(ArgIndex, 0), {}, {}};
  }
  const std::optional<std::string_view> argument = ArgumentOf(line);
  if (argument) return TakeArgument(*argument);
  return {ScriptStep::Kind::kNothing, command_, ArgIndex, {}, {}};
}

ScriptStep ScriptWalk::TakeArgument(std::string_view argument) {
  ScriptStep step{ScriptStep::Kind::kArgument, command_, ArgIndex, argument, {}};
  if (command_ == nullptr) {
    ++ArgIndex;
    return step;
  }
  step.role = ArgIndex == 0   ? command_->first
              : ArgIndex == 1 ? command_->second
                              : command_->further;
  if (step.role.content == Content::kTestKind) {
    TakeTarget = false;
    TestKind = TestOf(argument);
  } else if (step.role.content == Content::kLabel) {
    ArgIndex == 0 ? TakeGoto(step) : TakeIfExistGoto(step);
  }
  ArgIndex = ArgIndex == 0 ? command_->secondArgIndex : ArgIndex + 1;
  return step;
}

void ScriptWalk::TakeGoto(const ScriptStep& step) {
  Seeking = true;
  TargetLabel = step.argument;
  TakeTarget = true;
}

/// The line at index 2 makes the test due. The jump's first label is the same line for "file", the
/// next one for the others, and the second label stands behind it.
void ScriptWalk::TakeIfExistGoto(ScriptStep& step) {
  const std::int32_t targetIndex = TestKind == Test::kFile ? 2 : 3;
  if (TestKind == Test::kNone || step.index > targetIndex + 1) {
    step.role = {};
    return;
  }
  if (step.index == 2) step.test = TestKind;
  if (step.index == targetIndex) {
    TargetLabel = step.argument;
    Seeking = true;
  } else if (step.index == targetIndex + 1) {
    ElseLabel = step.argument;
  } else {
    step.role.content = TestKind == Test::kEntry ? Content::kEntry : Content::kPattern;
  }
}
