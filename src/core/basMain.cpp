#include "core/basMain.h"

#include "platform/DosPath.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace basMain {

std::string TempDirOf(std::string_view programFolder) {
  return DosPath::Join(programFolder, "inst_temp");
}

std::string FindPack(const FileSystem& files, std::string_view commandLine,
                     std::string_view programFolder) {
  std::string path = Text::Replace(commandLine, "\"", "");
  if (!path.empty()) return path;
  const std::string name = files.FindFirst(DosPath::Join(programFolder, "*.kvpk"), kFindFiles);
  return name.empty() ? std::string() : DosPath::Join(programFolder, name);
}

bool IsGameDirectory(const FileSystem& files, std::string_view folder) {
  return !files.FindFirst(DosPath::Join(folder, "gta_sa.exe"), kFindFiles).empty();
}

}  // namespace basMain
