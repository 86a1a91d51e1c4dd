#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/WantedStop.h"

/// The error convention of the program: a procedure that the user's event started, and a few
/// more, have a trap. When anything in one fails, it stops there, hands its name and the cause to
/// `LogError`, and ends; its caller goes on as if nothing had happened, and nothing is undone.
namespace basDebugLog {

/// A failure that a trap has caught. All texts are engine text.
struct TrappedFailure {
  std::string_view source;  ///< "module.procedure"
  std::string_view cause;
  bool callerTells;  ///< the procedure's caller gets the cause and tells developers itself
};

/// Takes each trapped failure.
using Recorder = std::function<void(const TrappedFailure& failure)>;

/// Sets where `LogError` writes: one recorder for the process, none at first. Set it once, before
/// anything runs. Users never see it.
void SetRecorder(Recorder recorder);

/// A recorder that writes to stderr in UTF-8.
Recorder StderrRecorder();

/// The recorder that the environment asks for: stderr if KELVO_LOG_ERRORS is set, else none.
Recorder RecorderFromEnvironment();

/// Reports a failure of the procedure `source` ("module.procedure") to the recorder. Always 0.
int LogError(std::string_view source, std::string_view cause, bool callerTells = false);

/// The cause of `body`'s failure, if it failed. The one place in the program that catches
/// everything, but for a wanted stop, which no trap swallows.
template <typename Body>
std::optional<std::string> Caught(Body&& body) {
  try {
    std::forward<Body>(body)();
    return std::nullopt;
  } catch (const WantedStop&) {
    throw;
  } catch (const std::exception& failure) {
    return failure.what();
  } catch (...) {
    return "a failure of an unknown kind";
  }
}

}  // namespace basDebugLog

/// Runs `body` behind a trap named `source`: a failure goes to `LogError`, and no further. Returns
/// whether `body` ran to its end.
template <typename Body>
bool Trapped(std::string_view source, Body&& body) {
  const auto cause = basDebugLog::Caught(std::forward<Body>(body));
  if (cause) basDebugLog::LogError(source, *cause);
  return !cause;
}

/// The same for procedures whose caller tells developers of the failure itself, and knows where it
/// happened: returns the cause. The program itself never looks at it.
template <typename Body>
std::optional<std::string> CauseOf(std::string_view source, Body&& body) {
  auto cause = basDebugLog::Caught(std::forward<Body>(body));
  if (cause) basDebugLog::LogError(source, *cause, true);
  return cause;
}
