#pragma once

#include <optional>
#include <string>

struct Catalogue;
class FileSystem;
class clsIMGtool;

/// Opens the pack `utf8` (native path) into `pack` and `catalogue`, with its temp files in
/// `tempDir` (DOS path text). Returns what is wrong with its index, if anything; the catalogue
/// then holds what could be read. Fails if the file doesn't exist or isn't an archive.
std::optional<std::string> OpenPack(const FileSystem& files, clsIMGtool& pack,
                                    const std::string& tempDir, Catalogue& catalogue,
                                    const std::string& utf8);

/// The same; fails if anything is wrong with the pack.
void OpenWholePack(const FileSystem& files, clsIMGtool& pack, const std::string& tempDir,
                   Catalogue& catalogue, const std::string& utf8);
