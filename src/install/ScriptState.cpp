#include "install/ScriptState.h"

#include <optional>

#include "install/InstallSession.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"

std::string ScriptState::FirstArgName() const {
  return Session.Files.FindFirst(FirstArg, kFindFiles);
}

void ScriptState::UnpackPayload(std::string_view name) {
  const std::string unpacked = Session.TempPath(name);
  const bool isPlain = DosPath::IsPlainFileName(name);
  const bool exported = isPlain && Session.ModPackIMG.Export(name, unpacked + ".tmp");
  Session.StatusPrefix = "Dekomprimieren: " + std::string(name) + "...";
  Session.zLib.InputFileName = unpacked + ".tmp";
  Session.zLib.OutputFileName = unpacked;
  std::optional<std::string> damage;
  if (isPlain) damage = Session.zLib.Decompress();
  if (!exported) {
    Setbacks.push_back("the pack has no payload \"" + std::string(name) + "\"");
  } else if (damage) {
    Setbacks.push_back(*damage);
  }
}

void ScriptState::DeletePayload(std::string_view name) const {
  Session.Files.Delete(Session.TempPath(name) + ".tmp");
  Session.Files.Delete(Session.TempPath(name));
}
