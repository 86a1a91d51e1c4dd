// AddIMG, RemoveIMG, ReplaceIMG, RebuildIMG: line 1 of a block is the game archive.
//
// A first line that names no archive leaves the directory of another one in memory. Working from
// that on the wrong file would destroy it, so the rest of such a block does nothing.

#include "install/ImgCommands.h"

#include <string>

#include "install/InstallSession.h"
#include "install/ScriptState.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"

namespace {

/// `AddFile` would make a file that doesn't exist, so a name that leads out of `TempDir` must
/// fail here.
void RequirePlainName(std::string_view name) {
  if (!DosPath::IsPlainFileName(name)) {
    Fail("payload \"", name, "\": the name can't stand for a file in the temp directory");
  }
}

}  // namespace

namespace ImgCommands {

void LoadArchive(ScriptState& state, std::string_view path) {
  state.FirstArg = state.Session.ResolvePath(path);
  state.ArchiveUsable = state.Session.IMG.Load(state.FirstArg);
}

void AddIMG(ScriptState& state, std::string_view payload) {
  if (!state.ArchiveUsable) return;
  state.UnpackPayload(payload);
  state.Session.SetStatus("F\xFCge zu " + state.FirstArgName() + " hinzu..." +
                          std::string(payload));
  RequirePlainName(payload);
  state.Session.IMG.AddFile(state.Session.TempPath(payload));
  state.DeletePayload(payload);
}

void ReplaceIMG(ScriptState& state, std::string_view payload) {
  if (!state.ArchiveUsable) return;
  state.UnpackPayload(payload);
  state.Session.SetStatus("Ersetze in " + state.FirstArgName() + " ..." + std::string(payload));
  // The old entry goes first, also where no new one can come.
  if (!DosPath::IsPlainFileName(payload)) state.Session.IMG.RemoveFile(payload);
  RequirePlainName(payload);
  state.Session.IMG.ReplaceFile(payload, state.Session.TempPath(payload));
  state.DeletePayload(payload);
}

void RemoveIMG(ScriptState& state, std::string_view entry) {
  if (!state.ArchiveUsable) return;
  state.Session.SetStatus("L\xF6sche aus " + state.FirstArgName() + " ..." + std::string(entry));
  state.Session.IMG.RemoveFile(entry);
}

void RebuildFirst(ScriptState& state, std::string_view path) {
  state.FirstArg = state.Session.ResolvePath(path);
  state.Session.StatusPrefix = state.FirstArgName();
  state.ArchiveUsable = state.Session.IMG.RebuildIMG(state.FirstArg);
}

void RebuildFurther(ScriptState& state, std::string_view path) {
  if (state.ArchiveUsable) state.Session.IMG.RebuildIMG(state.Session.ResolvePath(path));
}

}  // namespace ImgCommands
