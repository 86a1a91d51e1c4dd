#include "core/basRegistry.h"

#include "platform/Text.h"

namespace basRegistry {

std::string RegReadValue(const Registry::Source& source, Registry::Root root,
                         std::string_view subKey, std::string_view valueName) {
  return Registry::ReadValue(source, root, subKey, valueName);
}

std::string FindGameDirectory(const Registry::Source& source) {
  std::string path =
      RegReadValue(source, Registry::Root::kLocalMachine,
                   R"(SOFTWARE\Rockstar Games\GTA San Andreas\Installation)", "ExePath");
  path = Text::LowerCase(Text::Replace(path, "\"", ""));
  return Text::Replace(path, "\\gta_sa.exe", "");
}

}  // namespace basRegistry
