#pragma once

#include <string>

#include "tools/PackSource.h"

class FileSystem;

/// Makes the pack `pack` from the folder `source` (both DOS path text; docs/pack-source.md
/// describes the folder). An older pack is replaced, whole or not at all. The same source gives
/// the same bytes. Fails with file and line on what a pack can't hold.
void BuildPack(const FileSystem& files, const std::string& source, const std::string& pack,
               const PackSource::Warn& warn);
