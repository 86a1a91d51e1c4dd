#include "platform/Shell.h"

#include <string>

#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "platform/posix/Detached.h"

void DesktopOpener::Open(const std::string& file, const std::string& folder) {
  if (file.empty() || file.find('\0') != std::string::npos) return;
  std::string argument;
  std::string directory;
  try {
    // What is no path of a file that is there may be an address: the desktop knows.
    const bool isPath = DosPath::IsFullPath(file) ||
                        (!DosPath::HasWildcards(file) &&
                         !files_.FindFirst(file, kFindHidden | kFindSystem | kFindFolders).empty());
    argument = isPath ? files_.ToNative(file).string() : Text::ToUtf8(file);
    if (!folder.empty()) directory = files_.ToNative(folder).string();
  } catch (const Failure&) {
    return;  // As the desktop does with a file that isn't there: nothing opens.
  }
  // No file's name is taken for an option.
  if (argument.starts_with('-')) argument.insert(0, "./");
  Posix::RunDetached({.program = "xdg-open", .arguments = {argument}, .folder = directory});
}
