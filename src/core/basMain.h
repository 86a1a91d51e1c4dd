#pragma once

#include <string>
#include <string_view>

class FileSystem;

/// The program's own places: where it finds its pack, keeps its temp files and tests its game.
/// All paths are DOS path text.
namespace basMain {

/// The temp directory that belongs to a program folder: `inst_temp` in it, no trailing backslash.
std::string TempDirOf(std::string_view programFolder);

/// The pack to open at start-up: the command line without its double quotes, all of it one path;
/// if that is empty, the first `*.kvpk` in the program folder; empty if there is none.
std::string FindPack(const FileSystem& files, std::string_view commandLine,
                     std::string_view programFolder);

/// Whether the game's program file lies in the folder.
bool IsGameDirectory(const FileSystem& files, std::string_view folder);

}  // namespace basMain
