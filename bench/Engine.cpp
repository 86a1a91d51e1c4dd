#include "Engine.h"

#include "install/basScript.h"
#include "platform/Failure.h"

namespace {

std::filesystem::path Made(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  return folder;
}

}  // namespace

Engine::Engine(const std::filesystem::path& folder)
    : session_(files_, host_, shell_, files_.ToDosText(Made(folder / "temp"))) {
  session_.SAInstallDir = files_.ToDosText(folder);
}

void Engine::RunScript(const std::string& script) {
  for (const auto& failure : basScript::RunInstallScript(session_, script)) {
    Fail("line ", failure.lineNumber, ", ", failure.line, ", failed: ", failure.cause);
  }
}
