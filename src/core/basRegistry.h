#pragma once

#include <string>
#include <string_view>

#include "platform/Registry.h"

class FileSystem;

/// What the program takes from the registry.
namespace basRegistry {

/// The value as text; empty if it can't be read (see `Registry::ReadValue`).
std::string RegReadValue(const Registry::Source& source, Registry::Root root,
                         std::string_view subKey, std::string_view valueName);

/// The game directory as the registry has it: `ExePath` of the game without quotes, in lower
/// case, without "\gta_sa.exe"; else where Steam has it. Empty if neither knows the game.
std::string FindGameDirectory(const FileSystem& files, const Registry::Source& source);

/// Makes this program the one that a double click on a pack opens. `program` is the DOS path text
/// of the program file, `icon` a PNG of 128 x 128 pixels or empty (see `FileAssociation`). A user
/// for whom that can't be done has no association; nothing is reported.
void InstallKVPKExtension(const FileSystem& files, std::string_view program,
                          std::string_view icon = {});

}  // namespace basRegistry
