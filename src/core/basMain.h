#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/FolderLock.h"

class FileSystem;

/// The program's own places: where it finds its pack, keeps its temp files and tests its game.
/// All paths are DOS path text.
namespace basMain {

/// The folder that holds a file, without a trailing backslash, except that a drive's root has one.
std::string FolderOf(std::string_view path);

/// The temp directory that belongs to a program folder: `inst_temp` in it, no trailing backslash.
std::string TempDirOf(std::string_view programFolder);

/// A temp directory and the lock that keeps other living programs out of it.
struct TakenTempDir {
  std::string path;
  FolderLock lock;
};

/// Takes `wanted`, or the first of `wanted` + "2", "3", ... that no other living program has. It is
/// made if it isn't there, and what a program that was killed has left in it is deleted; so is all
/// that such ones have left in the others. Fails if it can't be made.
TakenTempDir TakeTempDir(const FileSystem& files, const std::string& wanted);

/// Empties a temp directory and removes it; what isn't an ordinary file stays, and it with that.
void RemoveTempDir(const FileSystem& files, TakenTempDir& taken);

/// The pack to open at start-up: the command line without its double quotes, all of it one path;
/// if that is empty, the first `*.kvpk` in the program folder; empty if there is none.
std::string FindPack(const FileSystem& files, std::string_view commandLine,
                     std::string_view programFolder);

/// Whether the game's program file lies in the folder.
bool IsGameDirectory(const FileSystem& files, std::string_view folder);

/// A file that the program carries within itself.
struct ResFile {
  std::string_view name;  // in lower case, as it is written
  std::string_view bytes;
};

/// Writes a resource file into a folder, unchanged. Has a trap.
void ExportResFile(const FileSystem& files, const ResFile& resource, std::string_view TargetDir);

/// Writes each resource file that is missing in the program folder; one that is there is never
/// written again, and nothing removes it. Has a trap.
void ExportComponents(const FileSystem& files, std::string_view programFolder,
                      std::span<const ResFile> resources);

}  // namespace basMain
