#pragma once

#include <string>

#include "platform/Registry.h"

/// What the program takes from the registry.
namespace basRegistry {

/// The value as text; empty if it can't be read (see `Registry::ReadValue`).
std::string RegReadValue(const Registry::Source& source, Registry::Root root,
                         std::string_view subKey, std::string_view valueName);

/// The game directory as the registry has it: `ExePath` of the game without quotes, in lower
/// case, without "\gta_sa.exe". Empty if the registry doesn't know the game.
std::string FindGameDirectory(const Registry::Source& source);

}  // namespace basRegistry
