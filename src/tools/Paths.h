#pragma once

#include <filesystem>
#include <string>

class FileSystem;
class clsIMGtool;

/// Paths from the command line. They are native ones, in UTF-8, until they go into the engine.

std::filesystem::path NativePath(const std::string& utf8);

/// The DOS path text of a file that can be read; fails if there is none.
std::string ExistingFile(const FileSystem& files, const std::string& utf8);

/// The DOS path text of a folder; fails if there is none.
std::string ExistingFolder(const FileSystem& files, const std::string& utf8);

/// Makes a folder and returns its DOS path text; fails if there is one that isn't empty.
std::string MakeEmptyFolder(const FileSystem& files, const std::string& utf8);

/// Loads an archive; fails if the file doesn't exist, which `Load` would make, or isn't one.
void LoadExisting(const FileSystem& files, clsIMGtool& archive, const std::string& utf8);

/// Whether both paths lead to one file. Two files that don't exist are never the same.
bool IsSameFile(const std::string& left, const std::string& right);
