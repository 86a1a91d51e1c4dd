// Copy, Move, Delete, Rename, CreateFolder, RemoveFolder, ShellExecute, and the way from a pack
// entry to a plain file.
//
// The commands' paths follow different rules, and packs rely on the differences: targets of Copy
// and Move are relative to the game directory, sources to the current directory, and what Delete,
// Rename, CreateFolder and RemoveFolder don't find as written lies below `TempDir`.

#include "install/InstallSession.h"
#include "install/ScriptRun.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"
#include "platform/Shell.h"

/// Turns a pack entry into the plain file of that name in `TempDir`. A name that can't stand for
/// one file there is treated like one that the pack doesn't have: nothing is written.
void ScriptRun::UnpackPayload(std::string_view name) {
  const std::string unpacked = session_.TempPath(name);
  const bool isPlain = DosPath::IsPlainFileName(name);
  if (isPlain) session_.ModPackIMG.Export(name, unpacked + ".tmp");
  session_.StatusPrefix = "Dekomprimieren: " + std::string(name) + "...";
  session_.zLib.InputFileName = unpacked + ".tmp";
  session_.zLib.OutputFileName = unpacked;
  if (isPlain) session_.zLib.Decompress();
}

void ScriptRun::DeletePayload(std::string_view name) {
  session_.Files.Delete(session_.TempPath(name) + ".tmp");
  session_.Files.Delete(session_.TempPath(name));
}

std::string ScriptRun::FirstArgName() const {
  return session_.Files.FindFirst(FirstArg, kFindFiles);
}

/// The source file of Copy and Move: as written if it is on disk, else out of the pack.
std::string ScriptRun::SourceOnDisk(std::string_view line) {
  std::string source(line);
  if (session_.Files.FindFirst(source, kFindHidden).empty()) {
    UnpackPayload(line);
    source = session_.TempPath(line);
    Unpacked = true;
  }
  return DosPath::Collapse(source);
}

void ScriptRun::CopyToTarget(const std::string& status, const std::string& source) {
  const std::string name = session_.Files.FindFirst(source, kFindFiles);
  const std::string target = DosPath::Join(session_.ResolvePath(RawFirstArg), name);
  session_.SetStatus(status + name);
  session_.Files.Copy(source, target);
  if (Unpacked) session_.Files.Delete(source + ".tmp");
}

void ScriptRun::Copy(std::string_view line) {
  const std::string source = SourceOnDisk(line);
  CopyToTarget("Kopiere Datei...", source);
  if (Unpacked) session_.Files.Delete(source);
}

/// A move is a copy and a delete, so it works across drives.
void ScriptRun::Move(std::string_view line) {
  const std::string source = SourceOnDisk(line);
  CopyToTarget("Verschiebe Datei...", source);
  session_.Files.Delete(source);
}

void ScriptRun::Delete(std::string_view line) {
  std::string path(line);
  if (session_.Files.FindFirst(path, kFindHidden).empty()) {
    path = DosPath::Join(session_.TempDir, path);
  }
  session_.SetStatus("L\xF6sche Datei..." + session_.Files.FindFirst(path, kFindFiles));
  session_.Files.Delete(path);
}

/// What the first line named isn't there as written: it lies below `TempDir` then.
void ScriptRun::FallBackToTempDir(int mask) {
  if (session_.Files.FindFirst(FirstArg, mask).empty()) {
    FirstArg = DosPath::Join(session_.TempDir, FirstArg);
  }
}

/// `FirstArg` keeps the old name, so a further line seeks what is gone, and fails.
void ScriptRun::Rename(std::string_view line) {
  FallBackToTempDir(kFindHidden | kFindFolders);
  session_.SetStatus("Umbenennen der Datei..." + FirstArgName());
  session_.Files.Rename(FirstArg, std::string(DosPath::FolderPart(FirstArg)) + std::string(line));
}

void ScriptRun::CreateFolder(std::string_view line) {
  FallBackToTempDir(kFindFolders);
  session_.SetStatus("Erstelle Ordner..." + std::string(line));
  session_.Files.CreateFolder(DosPath::Join(FirstArg, line));
}

/// The line only triggers the removal of the first line's folder, and is what the user sees.
void ScriptRun::RemoveFolder(std::string_view line) {
  FallBackToTempDir(kFindFolders);
  session_.SetStatus("L\xF6sche Ordner..." + std::string(line));
  session_.Files.RemoveFolder(FirstArg);
}

void ScriptRun::OpenFirstThing(std::string_view line) {
  Open(line.starts_with('\\') ? session_.ResolvePath(line) : std::string(line));
  ArgIndex = 1;
}

void ScriptRun::ShellExecute(std::string_view line) {
  Open(session_.ResolvePath(line));
}

void ScriptRun::Open(const std::string& thing) {
  const bool hasFolder = DosPath::IsFullPath(thing);
  session_.Shell.Open(thing, hasFolder ? std::string(DosPath::FolderPart(thing)) : std::string());
}
