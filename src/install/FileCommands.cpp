// Copy, Move, Delete, Rename, CreateFolder, RemoveFolder, ShellExecute.
//
// The commands' paths follow different rules, and packs rely on the differences: targets of Copy
// and Move are relative to the game directory, sources to the current directory, and what Delete,
// Rename, CreateFolder and RemoveFolder don't find as written lies below `TempDir`.

#include "install/FileCommands.h"

#include <string>

#include "install/InstallSession.h"
#include "install/ScriptState.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"
#include "platform/Shell.h"

namespace {

/// The source file of Copy and Move: as written if it is on disk, else out of the pack.
std::string SourceOnDisk(ScriptState& state, std::string_view line) {
  std::string source(line);
  if (state.Session.Files.FindFirst(source, kFindHidden).empty()) {
    state.UnpackPayload(line);
    source = state.Session.TempPath(line);
    state.Unpacked = true;
  }
  return DosPath::Collapse(source);
}

void CopyToTarget(ScriptState& state, const std::string& status, const std::string& source) {
  InstallSession& session = state.Session;
  const std::string name = session.Files.FindFirst(source, kFindFiles);
  const std::string target = DosPath::Join(session.ResolvePath(state.RawFirstArg), name);
  session.SetStatus(status + name);
  session.Files.Copy(source, target);
  if (state.Unpacked) session.Files.Delete(source + ".tmp");
}

/// What the first line named isn't there as written: it lies below `TempDir` then.
void FallBackToTempDir(ScriptState& state, int mask) {
  if (state.Session.Files.FindFirst(state.FirstArg, mask).empty()) {
    state.FirstArg = DosPath::Join(state.Session.TempDir, state.FirstArg);
  }
}

void Open(const InstallSession& session, const std::string& thing) {
  const bool hasFolder = DosPath::IsFullPath(thing);
  session.Shell.Open(thing, hasFolder ? std::string(DosPath::FolderPart(thing)) : std::string());
}

}  // namespace

namespace FileCommands {

void HoldPath(ScriptState& state, std::string_view path) {
  state.RawFirstArg = path;
  state.FirstArg = path;
}

void Copy(ScriptState& state, std::string_view source) {
  const std::string file = SourceOnDisk(state, source);
  CopyToTarget(state, "Kopiere Datei...", file);
  if (state.Unpacked) state.Session.Files.Delete(file);
}

/// A move is a copy and a delete, so it works across drives.
void Move(ScriptState& state, std::string_view source) {
  const std::string file = SourceOnDisk(state, source);
  CopyToTarget(state, "Verschiebe Datei...", file);
  state.Session.Files.Delete(file);
}

void Delete(ScriptState& state, std::string_view path) {
  InstallSession& session = state.Session;
  std::string place(path);
  if (session.Files.FindFirst(place, kFindHidden).empty()) {
    place = DosPath::Join(session.TempDir, place);
  }
  session.SetStatus("L\xF6sche Datei..." + session.Files.FindFirst(place, kFindFiles));
  session.Files.Delete(place);
}

/// `FirstArg` keeps the old name, so a further line seeks what is gone, and fails.
void Rename(ScriptState& state, std::string_view newName) {
  FallBackToTempDir(state, kFindHidden | kFindFolders);
  state.Session.SetStatus("Umbenennen der Datei..." + state.FirstArgName());
  state.Session.Files.Rename(
      state.FirstArg, std::string(DosPath::FolderPart(state.FirstArg)) + std::string(newName));
}

void CreateFolder(ScriptState& state, std::string_view name) {
  FallBackToTempDir(state, kFindFolders);
  state.Session.SetStatus("Erstelle Ordner..." + std::string(name));
  state.Session.Files.CreateFolder(DosPath::Join(state.FirstArg, name));
}

/// The line only triggers the removal of the first line's folder, and is what the user sees.
void RemoveFolder(ScriptState& state, std::string_view shown) {
  FallBackToTempDir(state, kFindFolders);
  state.Session.SetStatus("L\xF6sche Ordner..." + std::string(shown));
  state.Session.Files.RemoveFolder(state.FirstArg);
}

void OpenFirst(ScriptState& state, std::string_view thing) {
  Open(state.Session,
       thing.starts_with('\\') ? state.Session.ResolvePath(thing) : std::string(thing));
}

void OpenFurther(ScriptState& state, std::string_view path) {
  Open(state.Session, state.Session.ResolvePath(path));
}

}  // namespace FileCommands
