#include "core/basDebugLog.h"

#include <cstdlib>
#include <iostream>

#include "platform/Text.h"

namespace basDebugLog {
namespace {

Recorder& TheRecorder() {
  // Never destroyed: a thread that hangs in a sound server may fail as late as at the program's
  // end.
  static auto* const recorder = new Recorder;
  return *recorder;
}

}  // namespace

void SetRecorder(Recorder recorder) {
  TheRecorder() = std::move(recorder);
}

Recorder StderrRecorder() {
  return [](const TrappedFailure& failure) {
    std::cerr << Text::ToUtf8(failure.source) + ": " + Text::ToUtf8(failure.cause) + "\n";
  };
}

Recorder RecorderFromEnvironment() {
  return std::getenv("KELVO_LOG_ERRORS") != nullptr ? StderrRecorder() : Recorder();
}

int LogError(std::string_view source, std::string_view cause, bool callerTells) {
  if (TheRecorder()) TheRecorder()({source, cause, callerTells});
  return 0;
}

}  // namespace basDebugLog
