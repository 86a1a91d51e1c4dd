// AddIMG, RemoveIMG, ReplaceIMG, RebuildIMG: line 1 of a block is the game archive.
//
// A first line that names no archive leaves the directory of another one in memory. Working from
// that on the wrong file would destroy it, so the rest of such a block does nothing.

#include "install/InstallSession.h"
#include "install/ScriptRun.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"

namespace {

/// `AddFile` would make a file that doesn't exist, so a name that leads out of `TempDir` must
/// fail here.
void RequirePlainName(std::string_view name) {
  if (!DosPath::IsPlainFileName(name)) {
    Fail("payload \"", name, "\": the name can't stand for a file in the temp directory");
  }
}

}  // namespace

void ScriptRun::LoadArchive(std::string_view line) {
  FirstArg = session_.ResolvePath(line);
  archiveUsable_ = session_.IMG.Load(std::string(FirstArg));
  ArgIndex = 1;
}

void ScriptRun::RebuildFirstArchive(std::string_view line) {
  FirstArg = session_.ResolvePath(line);
  session_.StatusPrefix = FirstArgName();
  archiveUsable_ = session_.IMG.RebuildIMG(std::string(FirstArg));
  ArgIndex = 1;
}

void ScriptRun::RebuildIMG(std::string_view line) {
  if (archiveUsable_) session_.IMG.RebuildIMG(session_.ResolvePath(line));
}

void ScriptRun::AddIMG(std::string_view line) {
  if (!archiveUsable_) return;
  UnpackPayload(line);
  session_.SetStatus("F\xFCge zu " + FirstArgName() + " hinzu..." + std::string(line));
  RequirePlainName(line);
  session_.IMG.AddFile(session_.TempPath(line));
  DeletePayload(line);
}

void ScriptRun::ReplaceIMG(std::string_view line) {
  if (!archiveUsable_) return;
  UnpackPayload(line);
  session_.SetStatus("Ersetze in " + FirstArgName() + " ..." + std::string(line));
  // The old entry goes first, also where no new one can come.
  if (!DosPath::IsPlainFileName(line)) session_.IMG.RemoveFile(line);
  RequirePlainName(line);
  session_.IMG.ReplaceFile(line, session_.TempPath(line));
  DeletePayload(line);
}

void ScriptRun::RemoveIMG(std::string_view line) {
  if (!archiveUsable_) return;
  session_.SetStatus("L\xF6sche aus " + FirstArgName() + " ..." + std::string(line));
  session_.IMG.RemoveFile(line);
}
