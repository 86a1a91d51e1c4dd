#include "core/basRegistry.h"

#include "core/basDebugLog.h"
#include "platform/DosPath.h"
#include "platform/FileAssociation.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace basRegistry {

std::string RegReadValue(const Registry::Source& source, Registry::Root root,
                         std::string_view subKey, std::string_view valueName) {
  return Registry::ReadValue(source, root, subKey, valueName);
}

std::string FindGameDirectory(const FileSystem& files, const Registry::Source& source) {
  std::string path =
      RegReadValue(source, Registry::Root::kLocalMachine,
                   R"(SOFTWARE\Rockstar Games\GTA San Andreas\Installation)", "ExePath");
  if (path.empty() && !source.steamGames.empty())
    Trapped("basRegistry.FindGameDirectory",
            [&] { path = files.ToDosText(source.steamGames.front()); });
  path = Text::LowerCase(Text::Replace(path, "\"", ""));
  return Text::Replace(path, "\\gta_sa.exe", "");
}

void InstallKVPKExtension(const FileSystem& files, std::string_view program,
                          std::string_view icon) {
  Trapped("basRegistry.InstallKVPKExtension", [&] {
    FileAssociation::Register(files, {.extension = ".kvpk",
                                      .typeName = "kvpkfile",
                                      .text = "moddock mod-pack",
                                      .program = DosPath::Collapse(program),
                                      .name = "KELVO",
                                      .icon = std::string(icon)});
  });
}

}  // namespace basRegistry
