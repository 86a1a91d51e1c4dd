#pragma once

#include <cstdint>
#include <string>

/// The records that the program's parts share. All texts are engine text (Windows-1252).

/// A record of an archive's directory in memory.
struct udtIMGEntry {
  std::string Name;         // cut at its NUL, at most 24 bytes
  std::int32_t Offset = 0;  // bytes from the start of the file, 0-based
  std::int32_t Size = 0;    // bytes, whole sectors
};

/// One mod of a pack.
struct udtMod {
  std::int16_t TypeID = 0;    // the mod type it belongs to
  std::string Name;           // title line in the list
  std::string Description;    // short second line in the list
  std::string Picture;        // name of the picture's entry in the pack
  std::string InstallScript;  // lines separated by CR LF
  bool Selected = false;      // ticked for installation
  std::string Readme;         // long text, lines separated by CR LF
  std::string Files;          // free text of the pack's author
};

/// One mod type of a pack.
struct udtModType {
  std::int16_t TypeID = 0;
  std::string Name;
  std::string Picture;          // name of the picture's entry in the pack
  std::string Description;      // long text
  std::int16_t ModCount = 0;    // mods of this type in the pack
  std::int16_t CheckState = 0;  // 0 none of them ticked, 1 all, 2 some
};
