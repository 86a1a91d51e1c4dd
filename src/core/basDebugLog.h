#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// The error convention of the program: a procedure that the user's event started, and a few
/// more, have a trap. When anything in one fails, it stops there, hands its name and the cause to
/// `LogError`, and ends; its caller goes on as if nothing had happened, and nothing is undone.
namespace basDebugLog {

/// Takes one line for developers, in engine text, for each trapped failure.
using Recorder = std::function<void(const std::string& line)>;

/// Sets where `LogError` writes: one recorder for the process, none at first. Set it once, before
/// anything runs. Users never see it.
void SetRecorder(Recorder recorder);

/// A recorder that writes to stderr in UTF-8.
Recorder StderrRecorder();

/// The recorder that the environment asks for: stderr if KELVO_LOG_ERRORS is set, else none.
Recorder RecorderFromEnvironment();

/// Reports a failure of the procedure `source` ("module.procedure") to the recorder. Always 0.
int LogError(std::string_view source, std::string_view cause);

}  // namespace basDebugLog

/// Runs `body` behind a trap named `source`. Returns the cause if it failed, for those callers
/// that serve developers; the program itself never looks at it. The one place in the program that
/// catches everything.
template <typename Body>
std::optional<std::string> Trapped(std::string_view source, Body&& body) {
  std::optional<std::string> cause;
  try {
    std::forward<Body>(body)();
  } catch (const std::exception& failure) {
    cause = failure.what();
  } catch (...) {
    cause = "a failure of an unknown kind";
  }
  if (cause) basDebugLog::LogError(source, *cause);
  return cause;
}
