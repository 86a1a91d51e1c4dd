#include "core/basMain.h"

#include "core/basDebugLog.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

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
