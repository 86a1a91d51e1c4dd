#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// The part of the Windows registry that the program knows, or on Linux what Wine prefixes have
/// of it.
namespace Registry {

enum class Root { kLocalMachine, kClassesRoot };

/// Where the registry is read from. Not used on Windows.
struct Source {
  /// Wine prefixes (folders with a `system.reg`), in the order in which they are asked.
  std::vector<std::filesystem::path> prefixes;

  /// Folders of the game that Steam has installed, for whom no prefix knows it.
  std::vector<std::filesystem::path> steamGames = {};

  /// WINEPREFIX, ~/.wine, and the game and its prefix in all libraries of Steam.
  static Source FromEnvironment();
};

/// The text of a string value (types 1 and 2), cut at its first NUL, with letters beyond the code
/// page by their numbers (see `Text::AliasOf`); empty if key or value can't
/// be read or the text is longer than 1,023 bytes. On Linux `Wow6432Node` is looked at as well,
/// and a path on a drive of the prefix comes back as `Z:\...` text.
std::string ReadValue(const Source& source, Root root, std::string_view subKey,
                      std::string_view valueName);

}  // namespace Registry
