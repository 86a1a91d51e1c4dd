#include "core/basDebugLog.h"

#include <cstdlib>
#include <iostream>

#include "platform/Text.h"

namespace basDebugLog {
namespace {

Recorder& TheRecorder() {
  static Recorder recorder;
  return recorder;
}

}  // namespace

void SetRecorder(Recorder recorder) {
  TheRecorder() = std::move(recorder);
}

Recorder StderrRecorder() {
  return [](const std::string& line) { std::cerr << Text::ToUtf8(line) << '\n'; };
}

Recorder RecorderFromEnvironment() {
  return std::getenv("KELVO_LOG_ERRORS") != nullptr ? StderrRecorder() : Recorder();
}

int LogError(std::string_view source, std::string_view cause) {
  if (TheRecorder()) TheRecorder()(std::string(source) + ": " + std::string(cause));
  return 0;
}

}  // namespace basDebugLog
