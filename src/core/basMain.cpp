#include "core/basMain.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/basDebugLog.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace {

constexpr std::string_view kProgram = "KELVO";

bool IsThere(const FileSystem& files, const std::string& folder) {
  return !files.FindFirst(folder, kFindFolders | kFindHidden).empty();
}

void MakeUnlessThere(const FileSystem& files, const std::string& folder) {
  if (IsThere(files, folder)) return;
  try {
    files.CreateFolder(folder);
  } catch (const Failure&) {
    // Started twice at once, the other one may have been first.
    if (!IsThere(files, folder)) throw;
  }
}

void EmptyTempDir(const FileSystem& files, const std::string& folder) {
  Trapped("basMain.EmptyTempDir", [&] { files.Delete(DosPath::Join(folder, "*.*")); });
  Trapped("basMain.EmptyTempDir", [&] { files.RemoveDeadHelpersBelow(folder); });
}

// The folder, if no other living program has it.
FolderLock TakeFolder(const FileSystem& files, const std::string& folder) {
  FolderLock lock = FolderLock::Take(files.ToNative(folder), kProgram);
  if (lock.WasLeft()) EmptyTempDir(files, folder);
  return lock;
}

bool IsOneOfOurs(std::string_view name, std::string_view base) {
  const std::string_view number = name.substr(std::min(name.size(), base.size()));
  return number.find_first_not_of("0123456789") == std::string_view::npos;
}

void RemoveDeadOnes(const FileSystem& files, const std::string& wanted, const std::string& taken) {
  const std::string_view parent = DosPath::FolderPart(wanted);
  const std::string_view base = std::string_view(wanted).substr(parent.size());
  std::vector<std::string> names;
  Trapped("basMain.RemoveDeadOnes", [&] { names = files.FindAll(wanted + "*", kFindFolders); });
  for (const std::string& name : names) {
    const std::string folder = Concat(parent, name);
    if (Text::EqualsIgnoringCase(folder, taken) || !IsOneOfOurs(name, base)) continue;
    Trapped("basMain.RemoveDeadOnes", [&] {
      FolderLock lock = TakeFolder(files, folder);
      if (!lock.WasLeft()) return;
      lock.Release();
      files.RemoveFolder(folder);
    });
  }
}

}  // namespace

namespace basMain {

std::string FolderOf(std::string_view path) {
  std::string folder(DosPath::FolderPart(path));
  constexpr std::size_t kDriveRoot = 3;  // "C:\"
  if (folder.size() > kDriveRoot) folder.pop_back();
  return folder;
}

std::string TempDirOf(std::string_view programFolder) {
  return DosPath::Join(programFolder, "inst_temp");
}

TakenTempDir TakeTempDir(const FileSystem& files, const std::string& wanted) {
  constexpr int kMost = 1000;
  for (int i = 1; i <= kMost; ++i) {
    const std::string folder = i == 1 ? wanted : wanted + std::to_string(i);
    MakeUnlessThere(files, folder);
    FolderLock lock = TakeFolder(files, folder);
    // One that ends at this moment may have removed it again.
    if (lock.GetState() == FolderLock::State::kTaken || !IsThere(files, folder)) continue;
    RemoveDeadOnes(files, wanted, folder);
    files.WriteOnlyOwnFilesIn(folder);
    return {folder, std::move(lock)};
  }
  Fail("temp directory \"", wanted, "\": other programs have ", kMost, " of them");
}

void RemoveTempDir(const FileSystem& files, TakenTempDir& taken) {
  // Each with its own trap: a folder with nothing to delete is to be removed all the same.
  Trapped("frmMain.Form_Unload", [&] { files.Delete(DosPath::Join(taken.path, "*.*")); });
  taken.lock.Release();
  Trapped("frmMain.Form_Unload", [&] { files.RemoveFolder(taken.path); });
}

std::string FindPack(const FileSystem& files, std::string_view commandLine,
                     std::string_view programFolder) {
  // On Linux a name may hold a double quote, which on Windows can only stand around it.
  if (!files.FindFirst(commandLine, kFindHidden).empty()) return std::string(commandLine);
  std::string path = Text::Replace(commandLine, "\"", "");
  if (!path.empty()) return path;
  const std::string name = files.FindFirst(DosPath::Join(programFolder, "*.kvpk"), kFindFiles);
  return name.empty() ? std::string() : DosPath::Join(programFolder, name);
}

void ExportResFile(const FileSystem& files, const ResFile& resource, std::string_view TargetDir) {
  Trapped("basMain.ExportResFile",
          [&] { files.WriteWhole(DosPath::Join(TargetDir, resource.name), resource.bytes); });
}

void ExportComponents(const FileSystem& files, std::string_view programFolder,
                      std::span<const ResFile> resources) {
  Trapped("basMain.ExportComponents", [&] {
    for (const ResFile& resource : resources) {
      const bool isThere =
          !files.FindFirst(DosPath::Join(programFolder, resource.name), kFindFiles).empty();
      if (!isThere) ExportResFile(files, resource, programFolder);
    }
  });
}

bool IsGameDirectory(const FileSystem& files, std::string_view folder) {
  return !files.FindFirst(DosPath::Join(folder, "gta_sa.exe"), kFindFiles).empty();
}

}  // namespace basMain
