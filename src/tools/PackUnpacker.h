#pragma once

#include <cstddef>
#include <string>

#include "tools/PackSource.h"

struct Catalogue;
class FileSystem;
class clsIMGtool;

/// Writes an opened pack as a source folder (docs/pack-source.md) into the empty folder `folder`
/// (DOS path text), and nothing outside it, whatever the names in the pack say. Building the
/// folder gives the same catalogue and the same unpacked payload. Returns the number of entries
/// whose data can't be read; `warn` has told which.
std::size_t UnpackPack(const FileSystem& files, const clsIMGtool& pack, const Catalogue& catalogue,
                       const std::string& folder, const PackSource::Warn& warn);
